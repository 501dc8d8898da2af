#pragma once

#include "requests/BaseFileUploadRequestInfo.h"

/// Sends a local file as the new content of a file.
class COverwriteFileRequestInfo : public CBaseFileUploadRequestInfo {
public:
    COverwriteFileRequestInfo(const std::wstring& baseUrl, const std::wstring& fileId,
                              const std::wstring& filePath, UploadBody body = UploadBody::InMemory);
};
