#pragma once

#include "brevint/Export.h"

#include <string>

class CIdentityResponse;

/// Tells who is signed in.
class BREVINT_INTERFACE IIdentityProxy {
public:
    virtual ~IIdentityProxy() = default;

    /// Asks the service at `url`. Blocks until the reply is there. Returns a new response that the
    /// caller deletes; never null.
    virtual CIdentityResponse* GetIdentity(const std::wstring& url) = 0;
};
