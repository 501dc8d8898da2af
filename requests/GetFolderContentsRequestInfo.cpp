#include "requests/GetFolderContentsRequestInfo.h"

#include "support/Text.h"

CGetFolderContentsRequestInfo::CGetFolderContentsRequestInfo(const std::wstring& baseUrl,
                                                             const std::wstring& parentFolderId)
    : CServiceRequestInfo({WebRequestTypeGet, AcceptTypeXml, kNoAutoRedirect}, baseUrl,
                          BaseHlpr::StringReplace(L"Repository/Items/%PARENTFOLDERID%/Items",
                                                  L"%PARENTFOLDERID%", parentFolderId.c_str())) {}
