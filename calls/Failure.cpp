#include "calls/Failure.h"

#include "brevint/BaseResponse.h"
#include "brevint/ErrorCodes.h"
#include "calls/FailureText.h"
#include "calls/Service.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace calls {

namespace {

struct Row {
    double code;
    FailureKind kind;
};

constexpr Row kKinds[] = {
#define BREVINT_ERROR_CODE(code, name, kind, calls, meaning, hint) {code, FailureKind::kind},
#include "resources/ErrorCodes.inc"
#undef BREVINT_ERROR_CODE
};

} // namespace

Failure Invalid(std::wstring text) {
    Failure failure;
    failure.kind = FailureKind::Invalid;
    failure.text = std::move(text);
    return failure;
}

Failure NoReply(ExchangeFailure connection) {
    Failure failure;
    failure.kind = KindOf(ErrorCode::EmptyReply, 0, connection);
    failure.code = ErrorCode::EmptyReply;
    failure.connection = connection;
    failure.text = FailureText(connection);
    return failure;
}

Failure OutOfMemory() noexcept {
    Failure failure;
    failure.kind = FailureKind::OutOfMemory;
    return failure;
}

Failure RefusedBy(const StreamHead& head, const CBaseResponse& response) {
    Refusal refusal = DescribeRefusal(head, response);
    Failure failure;
    failure.kind = KindOf(refusal.code, head.status, ExchangeFailure::None);
    failure.code = refusal.code;
    failure.status = head.status;
    failure.text = std::move(refusal.text);
    failure.serverMessage = response.GetServerErrorMessage();
    return failure;
}

FailureKind KindOf(double code, unsigned long status, ExchangeFailure connection) {
    if (connection == ExchangeFailure::Cancelled) {
        return FailureKind::Cancelled;
    }
    if (connection == ExchangeFailure::TimedOut) {
        return FailureKind::TimedOut;
    }
    if (connection == ExchangeFailure::SourceFailed) {
        return FailureKind::LocalFile;
    }
    if (connection == ExchangeFailure::None && IsTemporary(status)) {
        return FailureKind::Unavailable;
    }
    const auto* const row = std::ranges::find(kKinds, code, &Row::code);
    return row == std::end(kKinds) ? FailureKind::Refused : row->kind;
}

} // namespace calls
