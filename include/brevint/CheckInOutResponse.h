#pragma once

#include "brevint/BaseResponse.h"

/// Outcome of checking an item in or out. Checking in what is already checked in succeeds.
class BREVINT_API CCheckInOutResponse : public CBaseResponse {
public:
    CCheckInOutResponse();
    ~CCheckInOutResponse() override;
    /// Adds the messages that this response recognises. The constructor calls it.
    virtual void InitErrorMaps();
};
