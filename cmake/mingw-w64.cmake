# Toolchain: Windows x86-64, cross-built with mingw-w64 (POSIX threads), tests run under Wine.

set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(triplet x86_64-w64-mingw32)
set(CMAKE_C_COMPILER ${triplet}-gcc-posix)
set(CMAKE_CXX_COMPILER ${triplet}-g++-posix)
set(CMAKE_RC_COMPILER ${triplet}-windres)

# scripts/setup puts what Debian does not package for this target into the cache's windows-prefix.
if(DEFINED ENV{BREVINT_CACHE})
  set(prefix $ENV{BREVINT_CACHE}/windows-prefix)
else()
  set(prefix $ENV{HOME}/.cache/brevint/windows-prefix)
endif()

set(CMAKE_FIND_ROOT_PATH /usr/${triplet} ${prefix})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/../scripts/wine-run)
