#include "calls/Service.h"

#include "brevint/ErrorCodes.h"
#include "brevint/IdentityResponse.h"
#include "requests/IdentityRequestInfo.h"

#include <algorithm>
#include <array>
#include <utility>

namespace calls {

Service::Service(std::wstring url, std::shared_ptr<IStreamingExchangeFactory> exchanges,
                 std::size_t longestDocument)
    : m_url(std::move(url)), m_exchanges(std::move(exchanges)), m_longestDocument(longestDocument) {
}

std::unique_ptr<IStreamingExchange> Service::MakeExchange(ExchangeTimeouts timeouts) const {
    return m_exchanges->Create(timeouts);
}

ServiceReply Service::Call(const IRequestInfo& info, StopSignal& stop,
                           ExchangeTimeouts timeouts) const {
    ServiceReply reply;
    const auto exchange = MakeExchange(timeouts);
    const StopSignal::Guard guard(stop, *exchange);
    reply.failure = exchange->Send(info, {}, nullptr);
    if (reply.failure == ExchangeFailure::None) {
        reply.head = exchange->Head();
        reply.failure = ReadAll(*exchange, reply.body);
    }
    return reply;
}

ExchangeFailure Service::ReadAll(IStreamingExchange& exchange, std::vector<char>& body) const {
    // One byte more shows that there is more.
    const ExchangeFailure failure = ReadUpTo(exchange, m_longestDocument + 1, body);
    return body.size() > m_longestDocument ? ExchangeFailure::Other : failure;
}

ExchangeFailure Service::ReadUpTo(IStreamingExchange& exchange, std::size_t most,
                                  std::vector<char>& body) {
    std::array<char, 16384> block{};
    while (body.size() < most) {
        std::size_t count = 0;
        const ExchangeFailure failure =
            exchange.Read(block.data(), std::min(block.size(), most - body.size()), count);
        body.insert(body.end(), block.data(), block.data() + count);
        if (failure != ExchangeFailure::None || count == 0) {
            return failure;
        }
    }
    return ExchangeFailure::None;
}

Verdict Service::Judge(const StreamHead& head, const CBaseResponse& response, StopSignal& stop,
                       ExchangeTimeouts timeouts) const {
    if (IsTemporary(head.status)) {
        return Verdict::TryAgain;
    }
    const bool mayHaveEnded = IsRedirect(head.status) || head.status == 401 || head.status == 403 ||
                              response.GetErrorCode() == ErrorCode::AuthorizationFailed;
    if (!mayHaveEnded) {
        return Verdict::Refused;
    }
    const std::optional<bool> signedIn = IsSignedIn(stop, timeouts);
    if (!signedIn) {
        return Verdict::TryAgain;
    }
    return *signedIn ? Verdict::Doubtful : Verdict::SignIn;
}

std::optional<bool> Service::IsSignedIn(StopSignal& stop, ExchangeTimeouts timeouts) const {
    const ServiceReply reply = Call(CIdentityRequestInfo(m_url), stop, timeouts);
    if (reply.failure != ExchangeFailure::None || IsTemporary(reply.head.status)) {
        return std::nullopt;
    }
    CIdentityResponse identity;
    identity.SetServerResponse(reply.body, reply.head.status);
    return IsSuccess(reply.head.status) && identity.GetSucceeded();
}

bool IsTemporary(unsigned long status) {
    constexpr unsigned long kTemporary[] = {408, 429, 502, 503, 504};
    return std::ranges::find(kTemporary, status) != std::end(kTemporary);
}

bool IsRedirect(unsigned long status) {
    return status / 100 == 3;
}

bool IsSuccess(unsigned long status) {
    return status / 100 == 2;
}

} // namespace calls
