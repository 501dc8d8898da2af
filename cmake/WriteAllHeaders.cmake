# Writes brevint/brevint.h, which includes all other headers of the folder FOLDER.

file(GLOB headers RELATIVE ${FOLDER} ${FOLDER}/*.h)
list(REMOVE_ITEM headers brevint.h)
list(SORT headers)
list(TRANSFORM headers REPLACE ".+" "#include \"brevint/\\0\"\n")
list(JOIN headers "" includes)
execute_process(COMMAND ${CMAKE_COMMAND} -E echo_append "#pragma once

// Written by scripts/write-tables from the names of the headers.

/// @file
/// Everything that an application needs of the library.

${includes}")
