#include "requests/DownloadFileRequestInfo.h"

#include "support/Text.h"

CDownloadFileRequestInfo::CDownloadFileRequestInfo(const std::wstring& baseUrl,
                                                   const std::wstring& fileId)
    : CServiceRequestInfo(
          {WebRequestTypeGet, AcceptTypeOctetStream, kNoAutoRedirect}, baseUrl,
          BaseHlpr::StringReplace(L"Repository/Files/%FILEID%", L"%FILEID%", fileId.c_str())) {}
