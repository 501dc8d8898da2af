#pragma once

#include "brevint/Export.h"

class CTemplateResponse;

/// Lists templates.
class BREVINT_INTERFACE ITemplateProxy {
public:
    virtual ~ITemplateProxy() = default;

    /// Asks the service at `url` for its templates of a type. Blocks until the reply is there.
    /// Returns a new response that the caller deletes; never null.
    virtual CTemplateResponse* GetTemplates(const wchar_t* url, const wchar_t* templateTypeId) = 0;
};
