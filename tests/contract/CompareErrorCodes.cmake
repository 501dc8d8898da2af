# Compares the names and numbers of the header HEADER with the rows of the table TABLE.

file(READ ${HEADER} header)
string(REGEX MATCHALL "double [A-Za-z]+ =[ \n]+[0-9]+" constants "${header}")
foreach(constant IN LISTS constants)
  string(REGEX MATCH "double ([A-Za-z]+) =[ \n]+([0-9]+)" unused "${constant}")
  list(APPEND named "${CMAKE_MATCH_2} ${CMAKE_MATCH_1}")
endforeach()

file(STRINGS ${TABLE} rows REGEX "^\\| [0-9]+ \\|")
foreach(row IN LISTS rows)
  string(REGEX MATCH "^\\| ([0-9]+) \\| `([A-Za-z]+)`" unused "${row}")
  list(APPEND listed "${CMAKE_MATCH_1} ${CMAKE_MATCH_2}")
endforeach()

if(NOT named OR NOT "${named}" STREQUAL "${listed}")
  list(JOIN named "\n  " named)
  list(JOIN listed "\n  " listed)
  message(FATAL_ERROR "the header has\n  ${named}\nthe table has\n  ${listed}")
endif()
