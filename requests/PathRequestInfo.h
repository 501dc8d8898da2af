#pragma once

#include "requests/ServiceRequestInfo.h"

/// Asks for an item's path.
class CPathRequestInfo : public CServiceRequestInfo {
public:
    CPathRequestInfo(const std::wstring& baseUrl, const std::wstring& itemId);
};
