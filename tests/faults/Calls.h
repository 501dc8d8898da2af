#pragma once

#include "tests/faults/Faults.h"

#include <span>
#include <string>

namespace brevint::test {

/// What a call's user has in the end.
struct Outcome {
    bool succeeded = false;
    /// After a success: the result is that of the healthy reply. After a failure: there is none.
    bool isClear = false;
    std::string text; ///< for the table
};

/// One kind of call, as far as a fault can tell it from the others.
struct Call {
    const char* name;
    /// Makes the call to a service at that address. `folder` holds a file "source".
    Outcome (*make)(const std::wstring& service, const std::wstring& folder);
    /// The body of its healthy reply. Empty for the steps of sign-in.
    std::string body;
    /// Which exchange of the call the fault is in.
    int step = 0;
};

std::span<const Call> Calls();

/// The healthy reply to an exchange of a call. `next` is where sign-in goes on, `path` that of its
/// cookies.
Healthy HealthyReply(const Call& call, int step, const std::string& next, const std::string& path);

} // namespace brevint::test
