#include "transfers/Attempts.h"

#include "support/Utf8.h"
#include "transfers/HttpFields.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <limits>
#include <random>

namespace transfers {

namespace {

using std::chrono::milliseconds;

/// Between a half and the whole of it.
milliseconds Shortened(milliseconds time) {
    std::random_device random;
    const auto half = static_cast<unsigned>(time.count() / 2);
    return time - milliseconds(half == 0 ? 0 : random() % (half + 1));
}

/// What a Retry-After asks for, which may be less than nothing.
std::optional<std::chrono::seconds> WantedPause(std::string_view retryAfter) {
    using namespace std::chrono;
    const char* const end = retryAfter.data() + retryAfter.size();
    std::uint32_t count = 0;
    const auto [stop, error] = std::from_chars(retryAfter.data(), end, count);
    if (stop == end && error != std::errc::invalid_argument) {
        return seconds(error == std::errc() ? count : std::numeric_limits<std::uint32_t>::max());
    }
    if (const std::optional<std::int64_t> time = ParseHttpDate(retryAfter)) {
        return sys_seconds(seconds(*time)) - floor<seconds>(system_clock::now());
    }
    return std::nullopt;
}

} // namespace

std::optional<milliseconds> Attempts::NextPause(const std::wstring& retryAfter) {
    if (++m_made >= m_settings.attempts) {
        return std::nullopt;
    }
    if (const auto wanted = WantedPause(Utf8::ToNarrow(retryAfter))) {
        return std::max(std::min<milliseconds>(*wanted, m_settings.longestRetryAfter),
                        Shortened(m_settings.firstPause));
    }
    milliseconds pause = m_settings.firstPause;
    for (unsigned i = 1; i < m_made && pause < m_settings.longestPause; ++i) {
        pause *= 2;
    }
    return Shortened(std::min(pause, m_settings.longestPause));
}

} // namespace transfers
