#pragma once

#include "transfers/StopSignal.h"
#include "transfers/TransferSettings.h"
#include "transport/IStreamingExchange.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

class CBaseResponse;
class IRequestInfo;

namespace transfers {

/// A whole reply to a call of the service.
struct ServiceReply {
    ExchangeFailure failure = ExchangeFailure::None;
    StreamHead head;
    std::vector<char> body;
};

/// What to do after a reply that is not what was asked for.
enum class Verdict {
    TryAgain, ///< It is a temporary state of the service.
    SignIn,   ///< The session has ended.
    Refused,
};

/// The service of a queue's transfers. Any thread.
class Service {
public:
    Service(std::wstring url, const TransferSettings& settings,
            std::shared_ptr<IStreamingExchangeFactory> exchanges);

    const std::wstring& Url() const { return m_url; }
    const TransferSettings& Settings() const { return m_settings; }

    std::unique_ptr<IStreamingExchange> MakeExchange(ExchangeTimeouts timeouts) const;

    /// Carries out a call whose reply is small.
    ServiceReply Call(const IRequestInfo& info, StopSignal& stop) const;
    /// Reads what is left of a reply; a document of the service is never longer than a limit.
    ExchangeFailure ReadAll(IStreamingExchange& exchange, std::vector<char>& body) const;

    /// Judges a reply that is no success, whose document `response` has read.
    Verdict Judge(const StreamHead& head, const CBaseResponse& response, StopSignal& stop) const;

private:
    /// Whether there is a session; nothing when that could not be learnt.
    std::optional<bool> IsSignedIn(StopSignal& stop) const;

    const std::wstring m_url;
    const TransferSettings m_settings;
    const std::shared_ptr<IStreamingExchangeFactory> m_exchanges;
};

/// A status that says: not now.
bool IsTemporary(unsigned long status);
/// A status that leads elsewhere.
bool IsRedirect(unsigned long status);

} // namespace transfers
