# What every target of the project is compiled with.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)

# A library that is linked anew changes no program that uses it.
set(CMAKE_LINK_DEPENDS_NO_SHARED ON)

# Programs and shared libraries of one build stand side by side, as Windows wants them.
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)

if(MSVC)
  # 4250, 4251, 4275: the exported classes inherit virtually, and hold and extend what is not exported.
  add_compile_options(/W4 /wd4250 /wd4251 /wd4275 /permissive- /utf-8 /Zc:__cplusplus)
  add_compile_definitions(_CRT_SECURE_NO_WARNINGS)
else()
  add_compile_options(-Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wcast-qual -Wundef -Werror
                      "$<$<COMPILE_LANGUAGE:CXX>:-Wnon-virtual-dtor;-Wold-style-cast>")
endif()

# Programs are compiled as libraries are, so that both can use the same precompiled headers.
if(NOT WIN32)
  add_compile_options(-fPIC)
endif()

# A test that fails names its source from the tree's root. Objects are shared by all clones (see
# scripts/lib.sh): one could name the clone where it was compiled.
if(NOT MSVC)
  add_compile_options(-fmacro-prefix-map=${PROJECT_SOURCE_DIR}/=)
endif()

# The caches of compiled objects know a precompiled header by its content.
if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
  add_compile_options("SHELL:-Xclang -fno-pch-timestamp")
elseif(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  add_compile_options(-fpch-preprocess)
endif()

# What a sanitizer cannot judge is left out of its builds.
set(BREVINT_SANITIZED OFF)
if(CMAKE_CXX_FLAGS MATCHES "-fsanitize")
  set(BREVINT_SANITIZED ON)
endif()
if(CMAKE_CXX_FLAGS MATCHES "-shared-libsan")
  # Where clang keeps its runtimes.
  execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=libclang_rt.tsan-x86_64.so
                  OUTPUT_VARIABLE path OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
  cmake_path(GET path PARENT_PATH BREVINT_SANITIZER_FOLDER)
  set(CMAKE_BUILD_WITH_INSTALL_RPATH ON) # as for the client, in cli/
  set(CMAKE_INSTALL_RPATH ${BREVINT_SANITIZER_FOLDER} $ORIGIN)
endif()

if(WIN32)
  add_compile_definitions(_WIN32_WINNT=0x0A00 WIN32_LEAN_AND_MEAN NOMINMAX UNICODE _UNICODE)
endif()
if(MINGW)
  # GCC 12 counts on the registers that an inline function leaves alone in this object's copy of it.
  # The linker keeps one copy for the program, perhaps from an object that is optimised less, and then
  # memory is overwritten. GCC takes care of that on Linux only.
  add_compile_options(-fno-ipa-ra)

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

# Options for code whose speed nobody notices, for the sake of the time to compile it. For Windows the
# tests are optimised a little: ld takes longer for ten thousand small functions than that costs.
set(BREVINT_TEST_OPTIONS "")
set(BREVINT_PROGRAM_OPTIONS "")
if(NOT MSVC AND NOT BREVINT_SANITIZED)
  set(BREVINT_TEST_OPTIONS -O0)
  set(BREVINT_PROGRAM_OPTIONS -O1)
  if(MINGW)
    # At this level GCC 12 takes the end of short wide strings for out of bounds.
    set(BREVINT_TEST_OPTIONS -O1 -Wno-array-bounds -Wno-stringop-overread)
  endif()
endif()

# brevint_sources(VARIABLE FOLDER…): the sources in these folders, each built because it is there.
function(brevint_sources variable)
  list(TRANSFORM ARGN APPEND /*.cpp)
  list(TRANSFORM ARGN PREPEND ${CMAKE_CURRENT_SOURCE_DIR}/)
  list(TRANSFORM ARGN REPLACE /\\./ /)
  file(GLOB sources CONFIGURE_DEPENDS ${ARGN})
  set(${variable} ${sources} PARENT_SCOPE)
endfunction()

# What most sources include of the standard library: half a second for each that parses it itself.
set(BREVINT_STANDARD_HEADERS
  <algorithm> <array> <atomic> <chrono> <cstddef> <cstdint> <cstdio> <cstring> <filesystem>
  <functional> <map> <memory> <mutex> <new> <optional> <ranges> <span> <sstream> <string>
  <string_view> <thread> <utility> <vector>)
