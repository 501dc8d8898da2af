#pragma once

#include "calls/StopSignal.h"
#include "support/Limits.h"
#include "transport/IStreamingExchange.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

class CBaseResponse;
class IRequestInfo;

namespace calls {

/// A whole reply to a call of the service.
struct ServiceReply {
    ExchangeFailure failure = ExchangeFailure::None;
    StreamHead head;
    std::vector<char> body;
};

/// What to do after a reply that is not what was asked for.
enum class Verdict {
    TryAgain, ///< It is a temporary state of the service.
    SignIn,   ///< There is no session, or it has ended.
    Doubtful, ///< Refused, or the session had ended: somebody is signed in, perhaps only since.
    Refused,
};

/// The service at an address. Any thread.
class Service {
public:
    /// A document that is longer than `longestDocument` is not read.
    Service(std::wstring url, std::shared_ptr<IStreamingExchangeFactory> exchanges,
            std::size_t longestDocument = kLongestDocument);

    const std::wstring& Url() const { return m_url; }

    std::unique_ptr<IStreamingExchange> MakeExchange(ExchangeTimeouts timeouts) const;

    /// Carries out a call and reads its whole reply.
    ServiceReply Call(const IRequestInfo& info, StopSignal& stop, ExchangeTimeouts timeouts) const;
    /// Reads what is left of a reply. One that is too long ends as ExchangeFailure::Other.
    ExchangeFailure ReadAll(IStreamingExchange& exchange, std::vector<char>& body) const;
    /// The same up to so many bytes, whatever follows.
    static ExchangeFailure ReadUpTo(IStreamingExchange& exchange, std::size_t most,
                                    std::vector<char>& body);

    /// Judges a reply that is no success, whose document `response` has read.
    Verdict Judge(const StreamHead& head, const CBaseResponse& response, StopSignal& stop,
                  ExchangeTimeouts timeouts) const;

private:
    /// A little more than the parser accepts, so that the one limit is Limits::kLongestReply.
    static constexpr std::size_t kLongestDocument = Limits::kLongestReply + 1;

    /// Whether there is a session; nothing when that could not be learnt.
    std::optional<bool> IsSignedIn(StopSignal& stop, ExchangeTimeouts timeouts) const;

    const std::wstring m_url;
    const std::shared_ptr<IStreamingExchangeFactory> m_exchanges;
    const std::size_t m_longestDocument;
};

/// A status that says: not now.
bool IsTemporary(unsigned long status);
/// A status that leads elsewhere.
bool IsRedirect(unsigned long status);
/// A status of a success.
bool IsSuccess(unsigned long status);

} // namespace calls
