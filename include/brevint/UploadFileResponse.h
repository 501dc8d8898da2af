#pragma once

#include "brevint/JobResponse.h"

/// Outcome of sending a new file.
class BREVINT_API CUploadFileResponse : public CJobResponse {
public:
    CUploadFileResponse();
    ~CUploadFileResponse() override;
    /// Adds the messages that this response recognises. The constructor calls it.
    virtual void InitErrorMaps();
};
