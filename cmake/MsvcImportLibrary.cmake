# brevint.lib, by which programs of Microsoft's compiler and of those that share its binary interface
# find the functions of brevint/c.h in Brevint.dll. They are the only ones that it names.

set(header ${CMAKE_SOURCE_DIR}/include/brevint/c.h)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${header})
file(READ ${header} text)
string(REGEX MATCHALL "BREVINT_API [^(;]*[ *]brevint_[a-z_]+\\(" declarations "${text}")
list(TRANSFORM declarations REPLACE ".*[ *](brevint_[a-z_]+)\\($" "\\1")
list(JOIN declarations "\n" functions)
set(definition ${CMAKE_BINARY_DIR}/brevint.def)
file(CONFIGURE OUTPUT ${definition} CONTENT "LIBRARY Brevint.dll\nEXPORTS\n@functions@\n" @ONLY)

set(BREVINT_MSVC_IMPORT_LIBRARY ${CMAKE_BINARY_DIR}/brevint.lib)
add_custom_command(OUTPUT ${BREVINT_MSVC_IMPORT_LIBRARY}
  COMMAND llvm-dlltool -m i386:x86-64 -d ${definition} -l ${BREVINT_MSVC_IMPORT_LIBRARY}
  DEPENDS ${definition}
  VERBATIM)
add_custom_target(brevint_msvc_import ALL DEPENDS ${BREVINT_MSVC_IMPORT_LIBRARY})
install(FILES ${BREVINT_MSVC_IMPORT_LIBRARY} DESTINATION ${CMAKE_INSTALL_LIBDIR}
  COMPONENT development)
