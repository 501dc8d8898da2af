# The library, from one list of sources for both targets. A new call adds its description and its
# response here.

set(BREVINT_SOURCES
  cookies/InternetCache.cpp

  proxies/Exchange.cpp
  proxies/IdentityProxy.cpp
  proxies/PortalForm.cpp
  proxies/ProxyFactory.cpp
  proxies/RepositoryProxy.cpp
  proxies/SignInProxy.cpp
  proxies/SignOutProxy.cpp
  proxies/TemplateProxy.cpp
  proxies/VersionProxy.cpp

  requests/BaseFileUploadRequestInfo.cpp
  requests/CheckInOutRequestInfo.cpp
  requests/CreateFolderRequestInfo.cpp
  requests/DeleteRequestInfo.cpp
  requests/DownloadFileRequestInfo.cpp
  requests/GetFolderContentsRequestInfo.cpp
  requests/IdentityRequestInfo.cpp
  requests/OverwriteFileRequestInfo.cpp
  requests/PathRequestInfo.cpp
  requests/PollFileStatusRequestInfo.cpp
  requests/ServiceRequestInfo.cpp
  requests/SignOutRequestInfo.cpp
  requests/TemplateRequestInfo.cpp
  requests/UploadFileRequestInfo.cpp
  requests/VersionInfoRequestInfo.cpp

  responses/BaseResponse.cpp
  responses/CheckInOutResponse.cpp
  responses/CreateFolderResponse.cpp
  responses/DeleteResponse.cpp
  responses/DownloadFileResponse.cpp
  responses/FolderItem.cpp
  responses/FolderListing.cpp
  responses/GetFolderContentsResponse.cpp
  responses/IdentityResponse.cpp
  responses/JobResponse.cpp
  responses/LocalDownloadFileResponse.cpp
  responses/LocalResponse.cpp
  responses/LocalResponseStore.cpp
  responses/OverwriteFileResponse.cpp
  responses/PathResponse.cpp
  responses/PollOverwriteStatusResponse.cpp
  responses/PollStatusResponse.cpp
  responses/PollUploadStatusResponse.cpp
  responses/SignInResponse.cpp
  responses/SignOutResponse.cpp
  responses/TemplateInfo.cpp
  responses/TemplateResponse.cpp
  responses/UploadFileResponse.cpp
  responses/VersionInfoResponse.cpp

  support/Files.cpp
  support/HtmlUnescape.cpp
  support/HttpEscape.cpp
  support/MarkupGuard.cpp
  support/PlatformCookies.cpp
  support/ResourceString.cpp
  support/SimpleXPathHelper.cpp
  support/Text.cpp
  support/UnicodeConvert.cpp
  support/UrlBuilder.cpp
  support/Xml.cpp

  transport/ReadBuffer.cpp
  transport/ReplyDelivery.cpp
  transport/RequestContext.cpp
  transport/WebRequest.cpp
  transport/WebRequestFactory.cpp)

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
target_compile_definitions(brevint_objects PUBLIC BREVINT_BUILDING)
target_include_directories(brevint_objects PUBLIC ${CMAKE_SOURCE_DIR} ${CMAKE_SOURCE_DIR}/include)
target_link_libraries(brevint_objects
  PUBLIC brevint_platform brevint_utf8 LibXml2::LibXml2 Threads::Threads)

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
else()
  # The platform layer's thread may outlive the last call by a moment: the code stays loaded.
  target_link_options(brevint PRIVATE -Wl,-z,nodelete
    -Wl,--version-script=${CMAKE_CURRENT_SOURCE_DIR}/cmake/exports.map)
  set_target_properties(brevint PROPERTIES LINK_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/cmake/exports.map)
endif()
