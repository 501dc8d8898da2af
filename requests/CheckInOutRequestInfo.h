#pragma once

#include "requests/ServiceRequestInfo.h"

/// Checks an item in or out: the same request with another body.
class CCheckInOutRequestInfo : public CServiceRequestInfo {
public:
    static constexpr int kCheckIn = 0;
    static constexpr int kCheckOut = 1;

    /// Any other mode leaves the body empty.
    CCheckInOutRequestInfo(const std::wstring& baseUrl, const std::wstring& itemId, int mode);
};
