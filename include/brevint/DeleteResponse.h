#pragma once

#include "brevint/BaseResponse.h"

/// Outcome of deleting an item.
class BREVINT_API CDeleteResponse : public CBaseResponse {
public:
    CDeleteResponse();
    ~CDeleteResponse() override;
    virtual void InitErrorMaps();
};
