# The packages that scripts/package makes: what they hold beyond an installation, and what they are
# called. Everything here is for builds with BREVINT_PACKAGE, whose presets name the kind of package.

# The licences of what is shipped or compiled in, as the Debian packages that it comes from state them.
set(licence_packages libcli11-dev libutfcpp-dev nlohmann-json3-dev)
if(WIN32)
  list(APPEND licence_packages
    libutf8proc-dev libxml2-dev gcc-mingw-w64-x86-64-posix-runtime mingw-w64-x86-64-dev)
  # The runtime DLLs' licence refers to this text.
  install(FILES /usr/share/common-licenses/GPL-3 DESTINATION ${CMAKE_INSTALL_DOCDIR}/licences
    COMPONENT runtime)
endif()
foreach(package ${licence_packages})
  install(FILES /usr/share/doc/${package}/copyright DESTINATION ${CMAKE_INSTALL_DOCDIR}/licences
    RENAME ${package}.txt COMPONENT runtime)
endforeach()
# Boost's statement names the authors of every file of its in two megabytes. Its licence is one for all that
# is compiled in here.
file(READ /usr/share/doc/libboost1.74-dev/copyright boost)
string(FIND "${boost}" "License: BSL-1.0\n Boost Software License" start)
if(start EQUAL -1)
  message(FATAL_ERROR "libboost1.74-dev states no Boost Software License.")
endif()
string(SUBSTRING "${boost}" ${start} -1 boost)
string(FIND "${boost}" "\n\n" end)
string(SUBSTRING "${boost}" 0 ${end} boost)
file(WRITE ${CMAKE_BINARY_DIR}/licences/libboost1.74-dev.txt
  "Upstream-Name: Boost\nCopyright: Boost project contributors\n${boost}\n")
install(FILES ${CMAKE_BINARY_DIR}/licences/libboost1.74-dev.txt
  DESTINATION ${CMAKE_INSTALL_DOCDIR}/licences COMPONENT runtime)

set(CPACK_PACKAGE_NAME brevint)
set(CPACK_PACKAGE_VENDOR "the Brevint authors")
# Package formats want an address; this one says that there is none.
set(CPACK_PACKAGE_CONTACT "The Brevint authors <nobody@brevint.invalid>")
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_SOURCE_DIR}/build/packages)
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/COPYRIGHT)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL runtime development)
string(TOLOWER ${CMAKE_SYSTEM_NAME} target)
set(CPACK_PACKAGE_FILE_NAME brevint-${PROJECT_VERSION}-${target}-${CMAKE_SYSTEM_PROCESSOR})

if(BREVINT_PACKAGE STREQUAL "DEB")
  include(DebianPackage)
else()
  install(FILES CHANGELOG.md DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT runtime)
endif()
set(CPACK_GENERATOR ${BREVINT_PACKAGE})
include(CPack)
