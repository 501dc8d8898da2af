#pragma once

#include "brevint/Export.h"
#include "brevint/Guid.h"

/// Makes proxies by interface identifier.
class BREVINT_INTERFACE IProxyFactory {
public:
    virtual ~IProxyFactory() = default;

    /// Makes a new object that implements the interface `iid` (brevint/InterfaceIds.h) and stores a
    /// pointer to that interface in `*object`; the caller deletes it. Returns 1, or 0 with a null
    /// pointer when the identifier is unknown or there is no memory.
    virtual int Create(const GUID& iid, void** object) = 0;
};
