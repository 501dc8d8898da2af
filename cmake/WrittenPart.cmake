# Compares what a program writes with the part of a document that it belongs to, or puts it there.
#
#   cmake -D COMMAND="PROGRAM|ARGUMENT…" -D DOCUMENT=FILE [-D PART=NAME] [-D WRITE=ON] -P WrittenPart.cmake
#
# The part lies between the lines "<!-- NAME: written by scripts/write-tables -->" and "<!-- end -->";
# without a name it is the whole document.

string(REPLACE "|" ";" COMMAND "${COMMAND}")
execute_process(COMMAND ${COMMAND} OUTPUT_VARIABLE written COMMAND_ERROR_IS_FATAL ANY)
string(REPLACE "\r\n" "\n" written "${written}") # what a program writes on Windows
file(READ ${DOCUMENT} document)
if(PART)
  set(begin "<!-- ${PART}: written by scripts/write-tables -->\n")
  string(FIND "${document}" "${begin}" start)
  if(start EQUAL -1)
    message(FATAL_ERROR "${DOCUMENT} lacks the line ${begin}")
  endif()
  string(LENGTH "${begin}" length)
  math(EXPR start "${start} + ${length}")
  string(SUBSTRING "${document}" 0 ${start} before)
  string(SUBSTRING "${document}" ${start} -1 after)
  string(FIND "${after}" "<!-- end -->" end)
  string(SUBSTRING "${after}" ${end} -1 after)
  set(written "${before}${written}${after}")
endif()
if(document STREQUAL written)
  return()
endif()
if(NOT WRITE)
  message(FATAL_ERROR "${DOCUMENT} is stale: run scripts/write-tables")
endif()
file(WRITE ${DOCUMENT} "${written}")
message("Written: ${DOCUMENT}")
