#pragma once

#include "brevint/IReadOnlyResponse.h"

/// Outcome of sending a file: the server-side job that processes it.
class BREVINT_INTERFACE IJobResponse : public virtual IReadOnlyResponse {
public:
    ~IJobResponse() override = default;

    /// Identifier of the job, to be polled; empty unless the call succeeded. Valid while the
    /// response lives.
    virtual const wchar_t* GetJobId() const = 0;
};
