#pragma once

#include "brevint/Export.h"

/// What a caller needs to judge the outcome of a call, and to delete its response.
class BREVINT_INTERFACE IReadOnlyResponse {
public:
    virtual ~IReadOnlyResponse() = default;

    /// True exactly when the error code is 1101.
    virtual bool GetSucceeded() const = 0;
    /// The outcome as a number; brevint/ErrorCodes.h names the values.
    virtual double GetErrorCode() const = 0;
};
