#include "requests/OverwriteFileRequestInfo.h"

#include "support/Text.h"

COverwriteFileRequestInfo::COverwriteFileRequestInfo(const std::wstring& baseUrl,
                                                     const std::wstring& fileId,
                                                     const std::wstring& filePath)
    : CBaseFileUploadRequestInfo(
          {WebRequestTypePut, AcceptTypeXml, kNoAutoRedirect}, baseUrl,
          BaseHlpr::StringReplace(L"Repository/Files/%FILEID%", L"%FILEID%", fileId.c_str()),
          filePath) {}
