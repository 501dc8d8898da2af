#include "transfers/Speed.h"

#include "transfers/TransferState.h"

#include <algorithm>

namespace transfers {

bool Speed::Note(std::uint64_t done, std::chrono::milliseconds interval) {
    const auto now = std::chrono::steady_clock::now();
    const auto elapsed = now - m_reported;
    const bool isFirst = m_reported == decltype(m_reported)();
    if (!isFirst && elapsed < interval) {
        return false;
    }
    if (!isFirst) {
        const std::uint64_t moved = done > m_reportedBytes ? done - m_reportedBytes : 0;
        const auto rate = static_cast<std::uint64_t>(
            static_cast<double>(moved) / std::chrono::duration<double>(elapsed).count());
        m_rate = m_rate == 0 ? rate : (3 * m_rate + rate) / 4;
    }
    m_reported = now;
    m_reportedBytes = done;
    return true;
}

std::uint64_t Speed::SecondsFor(std::uint64_t done, std::uint64_t total) const noexcept {
    const std::uint64_t rate = m_rate;
    return total == kUnknownSize || rate == 0 ? kUnknownSize
                                              : (total - std::min(done, total)) / rate;
}

} // namespace transfers
