#pragma once

#include "brevint/IReadOnlyResponse.h"

/// State of a server-side job at the time of a poll.
class BREVINT_INTERFACE IPollStatusResponse : public virtual IReadOnlyResponse {
public:
    ~IPollStatusResponse() override = default;

    /// One of brevint/JobStatus.h.
    virtual int GetStatus() const = 0;
    /// Identifier of the item that a finished job made; otherwise empty. Valid while the response
    /// lives.
    virtual const wchar_t* GetItemId() const = 0;
};
