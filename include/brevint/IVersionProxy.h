#pragma once

#include "brevint/Export.h"

class CVersionInfoResponse;

/// Asks for versions. Destroyed through its own type.
class BREVINT_INTERFACE IVersionProxy {
public:
    /// Asks the service at `url` for its version and those it accepts. Blocks until the reply is
    /// there. Returns a new response that the caller deletes; never null.
    virtual CVersionInfoResponse* GetVersionInfo(const wchar_t* url) = 0;

protected:
    ~IVersionProxy() = default;
};
