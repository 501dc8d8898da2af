#pragma once

#include "brevint/PollStatusResponse.h"

/// State of the job of an overwrite.
class BREVINT_API CPollOverwriteStatusResponse : public CPollStatusResponse {
public:
    CPollOverwriteStatusResponse();
    ~CPollOverwriteStatusResponse() override;
    virtual void InitErrorMaps();
};
