#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>

namespace transfers {

/// How fast something moves, smoothed so that what is left does not jump. For one thread at a time;
/// any may ask.
class Speed {
public:
    /// So many bytes are through. True when the interval since the last report is over.
    bool Note(std::uint64_t done, std::chrono::milliseconds interval);

    std::uint64_t BytesPerSecond() const noexcept { return m_rate; }
    /// How long the rest takes; kUnknownSize when that cannot be told.
    std::uint64_t SecondsFor(std::uint64_t done, std::uint64_t total) const noexcept;

private:
    std::atomic<std::uint64_t> m_rate = 0;
    std::chrono::steady_clock::time_point m_reported;
    std::uint64_t m_reportedBytes = 0;
};

} // namespace transfers
