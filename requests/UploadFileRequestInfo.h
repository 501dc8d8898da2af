#pragma once

#include "requests/BaseFileUploadRequestInfo.h"

/// Sends a local file into a folder.
class CUploadFileRequestInfo : public CBaseFileUploadRequestInfo {
public:
    CUploadFileRequestInfo(const std::wstring& baseUrl, const std::wstring& parentId,
                           const std::wstring& filePath, UploadBody body = UploadBody::InMemory);
};
