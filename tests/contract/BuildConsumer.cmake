# Installs the project from the build folder BUILD and moves what is installed. Then builds and runs
# the project CONSUMER against it by its CMake package, and its source by its pkg-config file, all in
# FOLDER.

function(run)
  execute_process(COMMAND ${ARGV} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

file(REMOVE_RECURSE ${FOLDER})
set(prefix "${FOLDER}/moved here")
run(${CMAKE_COMMAND} --install ${BUILD} --prefix ${FOLDER}/prefix)
file(RENAME ${FOLDER}/prefix ${prefix})

if(NOT TOOLCHAIN)
  run(${CMAKE_CURRENT_LIST_DIR}/check-run-paths ${prefix} ${prefix})
endif()
execute_process(COMMAND ${EMULATOR} "${prefix}/bin/brevint${SUFFIX}" --version
  OUTPUT_VARIABLE output OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
if(NOT output MATCHES " ${VERSION}$")
  message(FATAL_ERROR "the installed client is '${output}', not of version ${VERSION}")
endif()

if(TOOLCHAIN)
  list(APPEND options --toolchain ${TOOLCHAIN})
endif()
run(${CMAKE_COMMAND} -S ${CONSUMER} -B ${FOLDER}/build -G Ninja ${options}
  "-DBrevint_DIR=${prefix}/lib/cmake/Brevint" -DBREVINT_VERSION=${VERSION}
  "-DCMAKE_RUNTIME_OUTPUT_DIRECTORY=${prefix}/bin")
run(${CMAKE_COMMAND} --build ${FOLDER}/build)
run(${CMAKE_CTEST_COMMAND} --test-dir ${FOLDER}/build --no-tests=error --output-on-failure)

set(ENV{PKG_CONFIG_LIBDIR} "${prefix}/lib/pkgconfig")
execute_process(COMMAND pkg-config --cflags --libs "brevint = ${VERSION}"
  OUTPUT_VARIABLE flags COMMAND_ERROR_IS_FATAL ANY)
separate_arguments(flags UNIX_COMMAND ${flags})
run(${CXX} -std=c++20 ${CONSUMER}/Consumer.cpp ${flags} -o "${prefix}/bin/plain${SUFFIX}")
set(ENV{LD_LIBRARY_PATH} "${prefix}/lib")
run(${EMULATOR} "${prefix}/bin/plain${SUFFIX}")
file(REMOVE_RECURSE ${FOLDER})
