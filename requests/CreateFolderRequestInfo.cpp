#include "requests/CreateFolderRequestInfo.h"

#include "support/Text.h"

CCreateFolderRequestInfo::CCreateFolderRequestInfo(const std::wstring& baseUrl,
                                                   const std::wstring& parentId,
                                                   const std::wstring& folderName)
    : CServiceRequestInfo({WebRequestTypePost, AcceptTypeXml, kNoAutoRedirect}, baseUrl,
                          BaseHlpr::StringReplace(L"Repository/Items/%PARENTID%/Items",
                                                  L"%PARENTID%", parentId.c_str()),
                          BaseHlpr::StringReplace(L"{\"ItemType\":0,\"Name\":\"%FOLDERID%\"}",
                                                  L"%FOLDERID%", folderName.c_str())) {}
