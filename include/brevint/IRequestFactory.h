#pragma once

#include "brevint/Export.h"
#include "brevint/WebRequestType.h"

class IRequest;

/// Makes the requests through which the proxies talk to the service.
///
/// A factory belongs to whoever made it, is destroyed through its own type and must outlive the
/// proxies that use it. The order of declaration is part of the binary contract.
class BREVINT_INTERFACE IRequestFactory {
public:
    /// A new request with no URL and no verb. The caller deletes it.
    virtual IRequest* Create() = 0;
    /// A new request for a URL (null stands for an empty one) and a verb. The caller deletes it.
    virtual IRequest* Create(const wchar_t* url, WebRequestType type) = 0;

protected:
    ~IRequestFactory() = default;
};
