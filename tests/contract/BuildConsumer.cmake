# Installs the library from the build folder BUILD, then builds and runs the project CONSUMER against
# it, all in FOLDER.

function(run)
  execute_process(COMMAND ${ARGV} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

file(REMOVE_RECURSE ${FOLDER})
set(prefix ${FOLDER}/prefix)
run(${CMAKE_COMMAND} --install ${BUILD} --prefix ${prefix})
if(TOOLCHAIN)
  list(APPEND options --toolchain ${TOOLCHAIN})
endif()
run(${CMAKE_COMMAND} -S ${CONSUMER} -B ${FOLDER}/build -G Ninja ${options}
  -DBrevint_DIR=${prefix}/lib/cmake/Brevint
  -DCMAKE_RUNTIME_OUTPUT_DIRECTORY=${prefix}/bin)
run(${CMAKE_COMMAND} --build ${FOLDER}/build)
run(${CMAKE_CTEST_COMMAND} --test-dir ${FOLDER}/build --no-tests=error --output-on-failure)
file(REMOVE_RECURSE ${FOLDER})
