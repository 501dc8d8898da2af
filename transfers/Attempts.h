#pragma once

#include "transfers/TransferSettings.h"

#include <chrono>
#include <optional>
#include <string>

namespace transfers {

/// Counts a transfer's attempts, and says how long to wait before the next one.
class Attempts {
public:
    explicit Attempts(const TransferSettings& settings) : m_settings(settings) {}

    /// There was progress: the count begins anew.
    void Restart() {
        m_made = 0;
        m_repeated = 0;
    }
    /// Whether an attempt may be repeated at once, though it was refused.
    bool MayRepeat() { return m_repeated++ < kMostRepeated; }
    /// An attempt has failed. Nothing when it was the last one. `retryAfter` is what the server
    /// asks for, in seconds or as a date; any other text counts for nothing.
    std::optional<std::chrono::milliseconds> NextPause(const std::wstring& retryAfter);

private:
    static constexpr unsigned kMostRepeated = 3;

    const TransferSettings& m_settings;
    unsigned m_made = 0;
    unsigned m_repeated = 0;
};

} // namespace transfers
