# Third-party libraries, all packaged by Debian. docs/architecture.md says why each was chosen.

find_package(Threads REQUIRED)
if(WIN32)
  # Built by scripts/setup. Its own package file carries LIBXML_STATIC and the system libraries.
  find_package(LibXml2 CONFIG REQUIRED)
else()
  find_package(LibXml2 REQUIRED)
  find_package(CURL 7.88 REQUIRED)
endif()

# Debian's utf8proc brings no CMake package. UTF8PROC_STATIC keeps its header from importing: functions,
# and we use nothing else of it, link so from a static library and from a DLL's import library alike.
find_path(BREVINT_UTF8PROC_FOLDER utf8proc.h REQUIRED)
find_library(BREVINT_UTF8PROC_LIBRARY NAMES utf8proc utf8proc_static REQUIRED)
add_library(utf8proc::utf8proc UNKNOWN IMPORTED)
set_target_properties(utf8proc::utf8proc PROPERTIES
  IMPORTED_LOCATION ${BREVINT_UTF8PROC_LIBRARY}
  INTERFACE_INCLUDE_DIRECTORIES ${BREVINT_UTF8PROC_FOLDER}
  INTERFACE_COMPILE_DEFINITIONS UTF8PROC_STATIC)

# Header-only libraries. They are architecture-independent, so the cross build uses the native
# packages, but through a folder of links: the native include folder itself must stay out of it.
add_library(brevint_header_only INTERFACE)
if(CMAKE_CROSSCOMPILING)
  set(links ${CMAKE_BINARY_DIR}/header-only)
  file(MAKE_DIRECTORY ${links})
  foreach(name boost CLI nlohmann utf8cpp)
    file(CREATE_LINK /usr/include/${name} ${links}/${name} SYMBOLIC)
  endforeach()
  target_include_directories(brevint_header_only SYSTEM INTERFACE ${links} ${links}/utf8cpp)
else()
  foreach(header utf8.h boost/version.hpp CLI/CLI.hpp nlohmann/json.hpp)
    string(MAKE_C_IDENTIFIER BREVINT_FOLDER_OF_${header} folder)
    find_path(${folder} ${header} PATH_SUFFIXES utf8cpp REQUIRED)
    target_include_directories(brevint_header_only SYSTEM INTERFACE ${${folder}})
  endforeach()
endif()
# Boost 1.74 looks for coroutines only where GCC has them.
target_compile_definitions(brevint_header_only INTERFACE
  $<$<CXX_COMPILER_ID:Clang>:BOOST_ASIO_HAS_CO_AWAIT>
  $<$<CXX_COMPILER_ID:Clang>:BOOST_ASIO_HAS_STD_COROUTINE>)
