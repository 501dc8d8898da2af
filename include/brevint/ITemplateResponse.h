#pragma once

#include "brevint/IReadOnlyResponse.h"

#include <vector>

class CTemplateInfo;

/// Outcome of asking for templates.
class BREVINT_INTERFACE ITemplateResponse : public virtual IReadOnlyResponse {
public:
    ~ITemplateResponse() override = default;

    /// Appends one new record per template, in the server's order. The caller deletes each record;
    /// they may outlive the response. Where memory ends none is appended, and the code becomes
    /// 1102.
    virtual void GetTemplateMetadata(std::vector<CTemplateInfo*>& templates) = 0;
};
