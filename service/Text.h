#pragma once

#include <chrono>
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
std::string FormatUtc(std::chrono::system_clock::time_point time);

} // namespace brevint::service
