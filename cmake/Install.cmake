# What an application needs to build against the library: headers, library, CMake package.

include(CMakePackageConfigHelpers)

set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/Brevint)

install(TARGETS brevint EXPORT BrevintTargets
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(DIRECTORY include/brevint DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
if(WIN32)
  install(FILES ${BREVINT_RUNTIME_DLLS} DESTINATION ${CMAKE_INSTALL_BINDIR})
endif()

install(EXPORT BrevintTargets NAMESPACE Brevint:: FILE BrevintTargets.cmake
  DESTINATION ${package_folder})
file(CONFIGURE OUTPUT BrevintConfig.cmake @ONLY
  CONTENT "include(\${CMAKE_CURRENT_LIST_DIR}/BrevintTargets.cmake)\n")
write_basic_package_version_file(BrevintConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/BrevintConfig.cmake
              ${CMAKE_CURRENT_BINARY_DIR}/BrevintConfigVersion.cmake
  DESTINATION ${package_folder})
