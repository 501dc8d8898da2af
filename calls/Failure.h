#pragma once

#include "transport/IStreamingExchange.h"

#include <string>

class CBaseResponse;

namespace calls {

/// What kind of failure it was. The numbers are those of brevint_failure.
enum class FailureKind {
    None,
    Invalid,
    Cancelled,
    TimedOut,
    NoConnection,
    Unavailable,
    NotSignedIn,
    NotAllowed,
    NotFound,
    Exists,
    Refused,
    NotTheService,
    SignInRefused,
    SignedInAsOther,
    LocalFile,
    OutOfMemory,
};

/// What came of a call.
struct Failure {
    FailureKind kind = FailureKind::None;
    double code = 0; ///< Of brevint/ErrorCodes.h; 0: none.
    ExchangeFailure connection = ExchangeFailure::None;
    unsigned long status = 0; ///< HTTP status of the last reply; 0: none.
    std::wstring text;        ///< What went wrong, for a user.
    std::wstring serverMessage;
    bool mayHaveHappened = false; ///< The service may have carried out what was asked for.

    explicit operator bool() const { return kind != FailureKind::None; }
};

/// A failure before anything is sent.
Failure Invalid(std::wstring text);
/// No reply, or not the whole of it.
Failure NoReply(ExchangeFailure connection);
/// There is no memory left, or no thread. It has no text, for which memory would be needed.
Failure OutOfMemory() noexcept;
/// A reply that refuses. `response` has read its document.
Failure RefusedBy(const StreamHead& head, const CBaseResponse& response);

/// The kind that code, status and connection of an outcome make up.
FailureKind KindOf(double code, unsigned long status, ExchangeFailure connection);

} // namespace calls
