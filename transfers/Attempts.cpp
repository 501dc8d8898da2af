#include "transfers/Attempts.h"

#include "support/Utf8.h"

#include <algorithm>
#include <charconv>
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

} // namespace

std::optional<milliseconds> Attempts::NextPause(const std::wstring& retryAfter) {
    if (++m_made >= m_settings.attempts) {
        return std::nullopt;
    }
    const std::string digits = Utf8::ToNarrow(retryAfter);
    const char* const end = digits.data() + digits.size();
    unsigned seconds = 0;
    const auto [stop, error] = std::from_chars(digits.data(), end, seconds);
    if (!digits.empty() && error == std::errc() && stop == end) {
        return std::min<milliseconds>(std::chrono::seconds(seconds), m_settings.longestRetryAfter);
    }
    milliseconds pause = m_settings.firstPause;
    for (unsigned i = 1; i < m_made && pause < m_settings.longestPause; ++i) {
        pause *= 2;
    }
    return Shortened(std::min(pause, m_settings.longestPause));
}

} // namespace transfers
