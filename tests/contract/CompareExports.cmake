# Compares the symbols that LIBRARY exports with the list in the file LISTED, a mangled name a line.
# A change of the list is a change of what callers rely on; the test's output is the new list.

if(FORMAT STREQUAL "windows")
  execute_process(COMMAND ${OBJDUMP} -p ${LIBRARY} OUTPUT_VARIABLE output COMMAND_ERROR_IS_FATAL ANY)
  string(REGEX MATCHALL "\\[ *[0-9]+\\] [^ \n]*_Z[A-Za-z0-9_]+" rows "${output}")
else()
  execute_process(COMMAND ${NM} -D --defined-only ${LIBRARY} OUTPUT_VARIABLE output
    COMMAND_ERROR_IS_FATAL ANY)
  string(REGEX MATCHALL "[A-Za-z] [A-Za-z0-9_.@]+\n" rows "${output}")
endif()

set(exported "")
foreach(row ${rows})
  string(REGEX REPLACE "^.* " "" name "${row}")
  string(STRIP "${name}" name)
  list(APPEND exported ${name})
endforeach()
list(SORT exported)
list(REMOVE_DUPLICATES exported)

file(STRINGS ${LISTED} listed)
set(added ${exported})
list(REMOVE_ITEM added ${listed})
set(removed ${listed})
list(REMOVE_ITEM removed ${exported})
if(added OR removed OR NOT exported)
  list(JOIN exported "\n" lines)
  message("${lines}")
  list(JOIN added "\n  " added)
  list(JOIN removed "\n  " removed)
  message(FATAL_ERROR "exported but not listed:\n  ${added}\nlisted but not exported:\n  ${removed}")
endif()
