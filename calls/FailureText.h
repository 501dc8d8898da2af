#pragma once

#include "transport/IStreamingExchange.h"

#include <string>
#include <system_error>

class CBaseResponse;

namespace calls {

/// What a failed exchange means for a user: a sentence.
std::wstring FailureText(ExchangeFailure failure);

/// Why there is no reply that is of use: the failure or, without one, the status.
std::wstring NoReplyText(ExchangeFailure failure, const StreamHead& head);

/// A sentence about a local file, with the system's reason.
std::wstring FileFailureText(const std::wstring& what, const std::error_code& reason);

/// What is told of a reply that refuses.
struct Refusal {
    double code = 0;
    std::wstring text;
};

/// `response` has read the reply's document.
Refusal DescribeRefusal(const StreamHead& head, const CBaseResponse& response);

} // namespace calls
