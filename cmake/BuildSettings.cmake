# What every target of the project is compiled with.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

# Programs and shared libraries of one build stand side by side, as Windows wants them.
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)

if(MSVC)
  # 4250, 4251, 4275: the exported classes inherit virtually, and hold and extend what is not exported.
  add_compile_options(/W4 /wd4250 /wd4251 /wd4275 /permissive- /utf-8 /Zc:__cplusplus)
  add_compile_definitions(_CRT_SECURE_NO_WARNINGS)
else()
  add_compile_options(-Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor
                      -Wold-style-cast -Wcast-qual -Wundef -Werror)
endif()

if(WIN32)
  add_compile_definitions(_WIN32_WINNT=0x0A00 WIN32_LEAN_AND_MEAN NOMINMAX UNICODE _UNICODE)
endif()
if(MINGW)
  # The shared runtime, copied beside the programs: one heap and one exception state for all modules.
  foreach(name libstdc++-6.dll libgcc_s_seh-1.dll libwinpthread-1.dll)
    execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=${name}
                    OUTPUT_VARIABLE path OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
    if(NOT IS_ABSOLUTE ${path}) # Windows' own toolchains have them beside the compiler.
      cmake_path(REPLACE_FILENAME CMAKE_CXX_COMPILER ${name} OUTPUT_VARIABLE path)
    endif()
    list(APPEND BREVINT_RUNTIME_DLLS ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/${name})
    if(NOT EXISTS ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/${name})
      file(MAKE_DIRECTORY ${CMAKE_RUNTIME_OUTPUT_DIRECTORY})
      execute_process(COMMAND ${CMAKE_STRIP} --preserve-dates -o ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/${name} ${path}
                      COMMAND_ERROR_IS_FATAL ANY)
    endif()
  endforeach()
endif()
