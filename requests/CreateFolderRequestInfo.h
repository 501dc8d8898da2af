#pragma once

#include "requests/ServiceRequestInfo.h"

/// Makes a folder in a folder.
class CCreateFolderRequestInfo : public CServiceRequestInfo {
public:
    CCreateFolderRequestInfo(const std::wstring& baseUrl, const std::wstring& parentId,
                             const std::wstring& folderName);
};
