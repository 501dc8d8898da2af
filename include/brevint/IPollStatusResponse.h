#pragma once

#include "brevint/IReadOnlyResponse.h"

/// State of a server-side job at the time of a poll.
class BREVINT_INTERFACE IPollStatusResponse : public virtual IReadOnlyResponse {
public:
    ~IPollStatusResponse() override = default;

    /// 0: queued or running, poll again. 1: finished. 2: failed, or could not be asked.
    virtual int GetStatus() const = 0;
    /// Identifier of the item that a finished job made; otherwise empty. Valid while the response
    /// lives.
    virtual const wchar_t* GetItemId() const = 0;
};
