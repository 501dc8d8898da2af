#pragma once

#include "brevint/JobResponse.h"

/// Outcome of sending a new version of a file.
class BREVINT_API COverwriteFileResponse : public CJobResponse {
public:
    COverwriteFileResponse();
    ~COverwriteFileResponse() override;
    /// Adds the messages that this response recognises. The constructor calls it.
    virtual void InitErrorMaps();
};
