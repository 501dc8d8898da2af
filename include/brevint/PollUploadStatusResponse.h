#pragma once

#include "brevint/PollStatusResponse.h"

/// State of the job of an upload.
class BREVINT_API CPollUploadStatusResponse : public CPollStatusResponse {
public:
    CPollUploadStatusResponse();
    ~CPollUploadStatusResponse() override;
    /// Adds the messages that this response recognises. The constructor calls it.
    virtual void InitErrorMaps();
};
