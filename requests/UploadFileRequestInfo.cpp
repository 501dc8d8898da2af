#include "requests/UploadFileRequestInfo.h"

#include "support/Text.h"

CUploadFileRequestInfo::CUploadFileRequestInfo(const std::wstring& baseUrl,
                                               const std::wstring& parentId,
                                               const std::wstring& filePath, UploadBody body)
    : CBaseFileUploadRequestInfo({WebRequestTypePost, AcceptTypeXml, kNoAutoRedirect}, baseUrl,
                                 BaseHlpr::StringReplace(L"Repository/Items/%PARENTID%/Files",
                                                         L"%PARENTID%", parentId.c_str()),
                                 filePath, body) {}
