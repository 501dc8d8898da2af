#pragma once

#include "requests/ServiceRequestInfo.h"

/// Deletes an item, which travels in the body.
class CDeleteRequestInfo : public CServiceRequestInfo {
public:
    CDeleteRequestInfo(const std::wstring& baseUrl, const std::wstring& itemId);
};
