#include "requests/OverwriteFileRequestInfo.h"

#include "support/Text.h"

COverwriteFileRequestInfo::COverwriteFileRequestInfo(const std::wstring& baseUrl,
                                                     const std::wstring& fileId,
                                                     const std::wstring& filePath, UploadBody body)
    : CBaseFileUploadRequestInfo(
          {WebRequestTypePut, AcceptTypeXml, kNoAutoRedirect}, baseUrl,
          BaseHlpr::StringReplace(L"Repository/Files/%FILEID%", L"%FILEID%", fileId.c_str()),
          filePath, body) {}
