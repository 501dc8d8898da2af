#pragma once

#include "brevint/JobResponse.h"

/// Outcome of sending a new file.
class BREVINT_API CUploadFileResponse : public CJobResponse {
public:
    CUploadFileResponse();
    ~CUploadFileResponse() override;
    virtual void InitErrorMaps();
};
