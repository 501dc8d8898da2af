#pragma once

#include "requests/ServiceRequestInfo.h"

/// Lists a folder.
class CGetFolderContentsRequestInfo : public CServiceRequestInfo {
public:
    CGetFolderContentsRequestInfo(const std::wstring& baseUrl, const std::wstring& parentFolderId);
};
