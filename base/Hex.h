#pragma once

#include "base/Ascii.h"

#include <optional>
#include <string>
#include <string_view>

namespace base {

inline constexpr std::string_view kHexDigits = "0123456789abcdef";

/// The value of a hexadecimal digit; -1 for any other character.
constexpr int HexValue(char c) {
    const std::size_t value = kHexDigits.find(Lower(c));
    return value == std::string_view::npos ? -1 : static_cast<int>(value);
}

/// Appends the byte as "%XX", with digits in capitals.
inline void AppendPercentEscape(std::string& text, char byte) {
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    const auto value = static_cast<unsigned char>(byte);
    text += {'%', kDigits[value >> 4], kDigits[value & 0xF]};
}

/// Everything but letters, digits and "-._~" as "%XX".
inline std::string PercentEncode(std::string_view text) {
    std::string encoded;
    for (const char c : text) {
        if (IsLetterOrDigit(c) || std::string_view("-._~").find(c) != std::string_view::npos) {
            encoded += c;
        } else {
            AppendPercentEscape(encoded, c);
        }
    }
    return encoded;
}

/// "%XX" decoded, everything else kept; nothing when an escape is malformed.
inline std::optional<std::string> PercentDecode(std::string_view text) {
    std::string decoded;
    decoded.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '%') {
            decoded += text[i];
            continue;
        }
        const std::string_view digits = text.substr(i + 1, 2);
        if (digits.size() < 2 || HexValue(digits[0]) < 0 || HexValue(digits[1]) < 0) {
            return std::nullopt;
        }
        decoded += static_cast<char>(HexValue(digits[0]) * 16 + HexValue(digits[1]));
        i += 2;
    }
    return decoded;
}

} // namespace base
