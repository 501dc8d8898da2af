# The library, of the same sources for both targets.

brevint_sources(BREVINT_SOURCES c calls cookies proxies requests responses support transfers transport)
# These have libraries of their own, which the platform layer and the programs use too.
list(REMOVE_ITEM BREVINT_SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/support/Utf8.cpp
                                 ${CMAKE_CURRENT_SOURCE_DIR}/support/ItemName.cpp
                                 ${CMAKE_CURRENT_SOURCE_DIR}/support/LocalFileWriter.cpp
                                 ${CMAKE_CURRENT_SOURCE_DIR}/support/LocalName.cpp)

if(WIN32)
  configure_file(resources/Brevint.rc.in ${CMAKE_BINARY_DIR}/Brevint.rc @ONLY)
  set(resource_sources ${CMAKE_BINARY_DIR}/Brevint.rc)
  set_source_files_properties(${CMAKE_BINARY_DIR}/Brevint.rc PROPERTIES
    INCLUDE_DIRECTORIES ${CMAKE_SOURCE_DIR})
else()
  set(resource_sources resources/StringTable.cpp)
endif()

# The objects serve the shared library and the tests of what it does not export. BREVINT_BUILDING
# stands for "this module holds the code", for the tests too.
add_library(brevint_objects OBJECT ${BREVINT_SOURCES} ${resource_sources})
target_compile_definitions(brevint_objects
  PUBLIC BREVINT_BUILDING
  PRIVATE BREVINT_VERSION="${PROJECT_VERSION}")
target_include_directories(brevint_objects PUBLIC ${CMAKE_SOURCE_DIR} ${CMAKE_SOURCE_DIR}/include)
target_link_libraries(brevint_objects
  PUBLIC brevint_platform brevint_utf8 brevint_local_files LibXml2::LibXml2 Threads::Threads
  PRIVATE utf8proc::utf8proc)
target_precompile_headers(brevint_objects REUSE_FROM brevint_utf8)

add_library(brevint SHARED)
add_library(Brevint::Brevint ALIAS brevint)
target_link_libraries(brevint PRIVATE brevint_objects)
target_include_directories(brevint PUBLIC
  $<BUILD_INTERFACE:${CMAKE_SOURCE_DIR}/include>
  $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
target_compile_features(brevint INTERFACE cxx_std_20)
set_target_properties(brevint PROPERTIES
  EXPORT_NAME Brevint
  OUTPUT_NAME brevint
  VERSION ${PROJECT_VERSION}
  SOVERSION ${PROJECT_VERSION_MAJOR})
if(WIN32)
  set_target_properties(brevint PROPERTIES PREFIX "" OUTPUT_NAME Brevint)
  include(MsvcImportLibrary)
else()
  # The platform layer's thread may outlive the last call by a moment: the code stays loaded. Symbols are
  # looked up when it is loaded, so that the first call need not wait for that; its own functions are not
  # looked up at all.
  target_link_options(brevint PRIVATE -Wl,-z,nodelete -Wl,-z,now -Wl,-Bsymbolic-functions
    -Wl,--version-script=${CMAKE_CURRENT_SOURCE_DIR}/cmake/exports.map)
  set_target_properties(brevint PROPERTIES LINK_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/cmake/exports.map)
endif()
