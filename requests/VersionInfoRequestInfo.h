#pragma once

#include "requests/ServiceRequestInfo.h"

/// Asks for the service's version and those it accepts.
class CVersionInfoRequestInfo : public CServiceRequestInfo {
public:
    explicit CVersionInfoRequestInfo(const std::wstring& baseUrl);
};
