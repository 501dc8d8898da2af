# The pair of Debian packages: `brevint` with the library and the programs, `libbrevint-dev` with what
# an application is built from.

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME brevint)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libbrevint-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(version ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "brevint (= ${version})")
# Each description brings its own first line.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")
set(CPACK_DEBIAN_RUNTIME_DESCRIPTION "client for a service that hosts a document repository
The library through which an application signs in to such a service and lists,
downloads, uploads and manages files there; the command-line client brevint;
and brevint-service, a reference service that keeps nothing.")
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION "client library for a document repository - development
Headers, link library, CMake package, pkg-config file and guide for programs
that work with a web service that hosts a document repository.")

# For those who depend on the library, and for the loader's cache.
set(folder ${CMAKE_BINARY_DIR}/debian)
file(WRITE ${folder}/shlibs "libbrevint ${PROJECT_VERSION_MAJOR} brevint (>= ${PROJECT_VERSION})\n")
file(WRITE ${folder}/triggers "activate-noawait ldconfig\n")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA ${folder}/shlibs ${folder}/triggers)

# Files that every package has below share/doc.
string(TIMESTAMP date "%a, %d %b %Y %H:%M:%S +0000" UTC)
file(WRITE ${folder}/changelog.Debian "brevint (${version}) unstable; urgency=medium

  * changelog.gz tells what this version brings.

 -- ${CPACK_PACKAGE_CONTACT}  ${date}\n")
file(COPY CHANGELOG.md DESTINATION ${folder})
file(RENAME ${folder}/CHANGELOG.md ${folder}/changelog)
execute_process(COMMAND gzip -9nf ${folder}/changelog ${folder}/changelog.Debian
  COMMAND_ERROR_IS_FATAL ANY)
set(documentation ${CMAKE_INSTALL_DATAROOTDIR}/doc)
install(FILES ${folder}/changelog.gz ${folder}/changelog.Debian.gz
  DESTINATION ${documentation}/brevint COMPONENT runtime)
install(FILES ${folder}/changelog.gz ${folder}/changelog.Debian.gz
  DESTINATION ${documentation}/libbrevint-dev COMPONENT development)
install(FILES COPYRIGHT RENAME copyright
  DESTINATION ${documentation}/libbrevint-dev COMPONENT development)

# Every program has a manual; the service's says what its --help says.
add_custom_command(OUTPUT ${folder}/brevint-service.1
  COMMAND help2man --locale=C.UTF-8 --no-info --output=${folder}/brevint-service.1
    --name "reference service of a document repository" $<TARGET_FILE:brevint-service>
  DEPENDS brevint-service VERBATIM)
add_custom_target(brevint-service-manual ALL DEPENDS ${folder}/brevint-service.1)
install(FILES ${folder}/brevint-service.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1
  COMPONENT runtime)

# Debian compresses manuals, whoever installs them, and its zsh looks for completions elsewhere.
install(CODE [[
  set(share "$ENV{DESTDIR}${CMAKE_INSTALL_PREFIX}/share")
  file(GLOB manuals "${share}/man/man*/*.[1-9]")
  foreach(manual IN LISTS manuals)
    execute_process(COMMAND gzip -9nf ${manual} COMMAND_ERROR_IS_FATAL ANY)
  endforeach()
  if(EXISTS ${share}/zsh/site-functions)
    file(RENAME ${share}/zsh/site-functions ${share}/zsh/vendor-completions)
  endif()
]] COMPONENT runtime)
