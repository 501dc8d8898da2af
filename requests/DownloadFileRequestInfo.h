#pragma once

#include "requests/ServiceRequestInfo.h"

/// Fetches a file's bytes.
class CDownloadFileRequestInfo : public CServiceRequestInfo {
public:
    CDownloadFileRequestInfo(const std::wstring& baseUrl, const std::wstring& fileId);
};
