#pragma once

#include "brevint/BaseResponse.h"

/// Outcome of deleting an item.
class BREVINT_API CDeleteResponse : public CBaseResponse {
public:
    CDeleteResponse();
    ~CDeleteResponse() override;
    /// Adds the messages that this response recognises. The constructor calls it.
    virtual void InitErrorMaps();
};
