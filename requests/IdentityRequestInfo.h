#pragma once

#include "requests/ServiceRequestInfo.h"

/// Asks who is signed in.
class CIdentityRequestInfo : public CServiceRequestInfo {
public:
    explicit CIdentityRequestInfo(const std::wstring& baseUrl);
};
