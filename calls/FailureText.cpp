#include "calls/FailureText.h"

#include "brevint/BaseResponse.h"
#include "brevint/ErrorCodes.h"
#include "brevint/ErrorDescription.h"
#include "calls/Service.h"
#include "support/Utf8.h"

namespace calls {

std::wstring FailureText(ExchangeFailure failure) {
    switch (failure) {
    case ExchangeFailure::None: return {};
    case ExchangeFailure::NameNotResolved: return L"There is no host of that name.";
    case ExchangeFailure::Refused: return L"The host cannot be reached, or refuses the connection.";
    case ExchangeFailure::TimedOut: return L"The service did not go on in time.";
    case ExchangeFailure::CertificateNotTrusted:
        return L"The certificate of the service is not trusted.";
    case ExchangeFailure::BrokenOff: return L"The connection broke off.";
    case ExchangeFailure::Cancelled: return L"It was cancelled.";
    case ExchangeFailure::SourceFailed: return L"The local file changed while it was sent.";
    case ExchangeFailure::Other: break;
    }
    return L"The exchange failed: out of memory, or the address is none.";
}

std::wstring NoReplyText(ExchangeFailure failure, const StreamHead& head) {
    return failure != ExchangeFailure::None
               ? FailureText(failure)
               : L"The service answered with HTTP status " + std::to_wstring(head.status) + L'.';
}

std::wstring FileFailureText(const std::wstring& what, const std::error_code& reason) {
    return what + L": " + Utf8::ToWide(reason.message()) + L'.';
}

Refusal DescribeRefusal(const StreamHead& head, const CBaseResponse& response) {
    if (IsRedirect(head.status)) {
        return {ErrorCode::ReplyNotXml, L"The service leads elsewhere, to " + head.location + L'.'};
    }
    const ErrorDescription* const description = DescribeError(response.GetErrorCode());
    if (response.GetServerErrorMessage().empty() || !description) {
        return {ErrorCode::MessageNotRecognised, NoReplyText(ExchangeFailure::None, head)};
    }
    return {response.GetErrorCode(),
            L"The service refuses it: " + Utf8::ToWide(description->meaning) + L'.'};
}

} // namespace calls
