#pragma once

#include "brevint/Export.h"

#include <string>

class CSignOutResponse;

/// Ends the session.
class BREVINT_INTERFACE ISignOutProxy {
public:
    virtual ~ISignOutProxy() = default;

    /// Signs out of the service at `url`. Blocks until the reply is there. Returns a new response
    /// that the caller deletes; never null.
    virtual CSignOutResponse* SignOut(const std::wstring& url) = 0;
};
