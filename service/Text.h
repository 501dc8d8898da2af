#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brevint::service {

/// ASCII letters only, whatever the process's locale.
std::string ToLower(std::string_view text);
bool EqualsIgnoreCase(std::string_view left, std::string_view right);

/// Removes blanks and tabs at both ends.
std::string_view Trim(std::string_view text);

/// The pieces between the separators, empty ones too; they point into `text`.
std::vector<std::string_view> Split(std::string_view text, char separator);

/// "%XX" escapes decoded, everything else kept; nothing when an escape is malformed.
std::optional<std::string> PercentDecode(std::string_view text);

/// Everything but letters, digits and "-._~" as "%XX".
std::string PercentEncode(std::string_view text);

/// `text` as HTML text or as an attribute's value in double quotes.
std::string HtmlEscape(std::string_view text);

/// 64 random hexadecimal digits from the system's generator.
std::string RandomToken();

/// "2024-05-06T07:08:09Z"
std::string FormatUtc(std::chrono::system_clock::time_point time);

} // namespace brevint::service
