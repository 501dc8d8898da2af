#pragma once

#include "brevint/IRequestFactory.h"

/// Makes WebRequest objects. Keeps no reference to what it makes; may be used by any thread.
/// Throws std::bad_alloc when there is no memory.
class BREVINT_API WebRequestFactory final : public IRequestFactory {
public:
    IRequest* Create() override;
    IRequest* Create(const wchar_t* url, WebRequestType type) override;
};
