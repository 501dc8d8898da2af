#pragma once

#include "brevint/PollStatusResponse.h"

/// State of the job of an overwrite.
class BREVINT_API CPollOverwriteStatusResponse : public CPollStatusResponse {
public:
    CPollOverwriteStatusResponse();
    ~CPollOverwriteStatusResponse() override;
    /// Adds the messages that this response recognises. The constructor calls it.
    virtual void InitErrorMaps();
};
