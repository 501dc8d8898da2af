#pragma once

#include <chrono>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

namespace brevint::service {

/// The pieces between the separators, empty ones too; they point into `text`.
std::vector<std::string_view> Split(std::string_view text, char separator);

/// `text` as HTML text or as an attribute's value in double quotes.
std::string HtmlEscape(std::string_view text);

/// 64 random hexadecimal digits from the system's generator.
std::string RandomToken();

/// "2024-05-06T07:08:09Z"
std::string FormatUtc(std::chrono::sys_seconds time);

/// "Mon, 06 May 2024 07:08:09 GMT"
std::string FormatHttpDate(std::chrono::sys_seconds time);

/// Throws std::invalid_argument when `text` is no decimal number, or above `largest`.
std::uint64_t ReadNumber(std::string_view text,
                         std::uint64_t largest = std::numeric_limits<std::uint64_t>::max());

} // namespace brevint::service
