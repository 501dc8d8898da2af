#pragma once

#include "brevint/BaseResponse.h"

/// Outcome of signing out. The error code is always success; GetSignOutResult tells.
class BREVINT_API CSignOutResponse : public CBaseResponse {
public:
    CSignOutResponse();
    ~CSignOutResponse() override;

    void ParseServerResponse() override;
    /// True exactly when the HTTP status is 200.
    bool GetSignOutResult() const;
    /// Does nothing: this response recognises no messages.
    virtual void InitErrorMaps();
};
