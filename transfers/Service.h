#pragma once

#include "calls/Service.h"
#include "transfers/TransferSettings.h"

#include <memory>
#include <string>
#include <utility>

namespace transfers {

/// The service of a queue's transfers. Any thread.
class Service : public calls::Service {
public:
    Service(std::wstring url, const TransferSettings& settings,
            std::shared_ptr<IStreamingExchangeFactory> exchanges)
        : calls::Service(std::move(url), std::move(exchanges), kLongestDocument),
          m_settings(settings) {}

    const TransferSettings& Settings() const { return m_settings; }
    /// Those of an exchange that should not stop moving for long.
    ExchangeTimeouts Timeouts() const { return {m_settings.stallLimit, m_settings.stallLimit}; }

private:
    /// No reply to a transfer, a refusal or the state of a job, is longer.
    static constexpr std::size_t kLongestDocument = std::size_t{16} << 20;

    const TransferSettings m_settings;
};

} // namespace transfers
