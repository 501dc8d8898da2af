#pragma once

#include "brevint/Export.h"

#include <memory>

class RequestContext;

/// A response that may be destroyed while it waits to be filled: its destructor cuts it off from
/// the exchange of a WebRequest that was to fill it. For responses of the library.
class BREVINT_INTERFACE IDetachable {
public:
    virtual ~IDetachable() = default;

    /// Takes the exchange that is about to begin. An earlier one does not fill this response any
    /// more.
    virtual void Attach(std::shared_ptr<RequestContext> exchange) = 0;
};
