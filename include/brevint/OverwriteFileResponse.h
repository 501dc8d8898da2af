#pragma once

#include "brevint/JobResponse.h"

/// Outcome of sending a new version of a file.
class BREVINT_API COverwriteFileResponse : public CJobResponse {
public:
    COverwriteFileResponse();
    ~COverwriteFileResponse() override;
    virtual void InitErrorMaps();
};
