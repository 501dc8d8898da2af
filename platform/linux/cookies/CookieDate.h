#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace platform {

/// The value of a cookie's attribute Expires, in seconds since 1970; nothing if it is no date. Read
/// as RFC 6265 says (5.1.1): day, month, year and time are found in whatever order and format, and
/// other words, a time zone among them, count for nothing.
std::optional<std::int64_t> ParseCookieDate(std::string_view text);

} // namespace platform
