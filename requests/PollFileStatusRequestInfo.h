#pragma once

#include "requests/ServiceRequestInfo.h"

/// Asks how a job stands.
class CPollFileStatusRequestInfo : public CServiceRequestInfo {
public:
    CPollFileStatusRequestInfo(const std::wstring& baseUrl, const std::wstring& jobId);
};
