#pragma once

#include "requests/ServiceRequestInfo.h"

/// Ends the session.
class CSignOutRequestInfo : public CServiceRequestInfo {
public:
    explicit CSignOutRequestInfo(const std::wstring& baseUrl);
};
