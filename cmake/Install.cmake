# What an installed Brevint consists of. Component `runtime`, the default, is what a program needs in
# order to run, and the programs themselves, which their folders install; `development` is what an
# application is built from: headers, link library, CMake package, pkg-config file, guide.

include(CMakePackageConfigHelpers)

set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/Brevint)

install(TARGETS brevint EXPORT BrevintTargets
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT runtime
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT development
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)
install(DIRECTORY include/brevint DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development
  FILES_MATCHING PATTERN *.h)
if(MINGW)
  install(FILES ${BREVINT_RUNTIME_DLLS} DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT runtime)
endif()

install(EXPORT BrevintTargets NAMESPACE Brevint:: FILE BrevintTargets.cmake
  DESTINATION ${package_folder} COMPONENT development)
file(CONFIGURE OUTPUT BrevintConfig.cmake @ONLY
  CONTENT "include(\${CMAKE_CURRENT_LIST_DIR}/BrevintTargets.cmake)\n")
write_basic_package_version_file(BrevintConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/BrevintConfig.cmake
              ${CMAKE_CURRENT_BINARY_DIR}/BrevintConfigVersion.cmake
  DESTINATION ${package_folder} COMPONENT development)

# The file finds the prefix from where it lies itself, so that the installed tree can be moved.
set(pkgconfig_folder ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
file(RELATIVE_PATH prefix_from_pkgconfig /${pkgconfig_folder} /)
get_target_property(link_name brevint OUTPUT_NAME)
configure_file(cmake/brevint.pc.in brevint.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/brevint.pc
  DESTINATION ${pkgconfig_folder} COMPONENT development)

install(FILES COPYRIGHT RENAME copyright
  DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT runtime)
install(FILES docs/command-line.md docs/service.md
  DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT runtime)
install(FILES docs/guide.md docs/classes.md docs/transfers.md docs/error-codes.md
  DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT development)
