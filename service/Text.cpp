#include "service/Text.h"

#include <algorithm>
#include <cstdio>
#include <random>

namespace brevint::service {

namespace {

constexpr char hexDigits[] = "0123456789ABCDEF";

char LowerChar(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

int HexValue(char c) {
    if (c >= '0' && c <= '9')
        return c - '0';
    c = LowerChar(c);
    return c >= 'a' && c <= 'f' ? c - 'a' + 10 : -1;
}

} // namespace

std::string ToLower(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(), LowerChar);
    return result;
}

bool EqualsIgnoreCase(std::string_view left, std::string_view right) {
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](char a, char b) { return LowerChar(a) == LowerChar(b); });
}

std::string_view Trim(std::string_view text) {
    const auto first = text.find_first_not_of(" \t");
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

std::vector<std::string_view> Split(std::string_view text, char separator) {
    std::vector<std::string_view> pieces;
    for (;;) {
        const auto end = text.find(separator);
        pieces.push_back(text.substr(0, end));
        if (end == std::string_view::npos)
            return pieces;
        text.remove_prefix(end + 1);
    }
}

std::optional<std::string> PercentDecode(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '%') {
            result += text[i];
            continue;
        }
        if (i + 2 >= text.size())
            return std::nullopt;
        const int high = HexValue(text[i + 1]);
        const int low = HexValue(text[i + 2]);
        if (high < 0 || low < 0)
            return std::nullopt;
        result += static_cast<char>(high * 16 + low);
        i += 2;
    }
    return result;
}

std::string PercentEncode(std::string_view text) {
    std::string result;
    for (char c : text) {
        const bool plain = (c >= '0' && c <= '9') || (LowerChar(c) >= 'a' && LowerChar(c) <= 'z') ||
                           std::string_view("-._~").find(c) != std::string_view::npos;
        if (plain) {
            result += c;
        } else {
            const auto byte = static_cast<unsigned char>(c);
            result += {'%', hexDigits[byte >> 4], hexDigits[byte & 15]};
        }
    }
    return result;
}

std::string HtmlEscape(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    for (char c : text) {
        switch (c) {
        case '&': result += "&amp;"; break;
        case '<': result += "&lt;"; break;
        case '>': result += "&gt;"; break;
        case '"': result += "&quot;"; break;
        default: result += c;
        }
    }
    return result;
}

std::string RandomToken() {
    std::random_device source;
    std::string token;
    while (token.size() < 64) {
        unsigned bits = source();
        for (int digit = 0; digit < 8; ++digit, bits >>= 4)
            token += LowerChar(hexDigits[bits & 15]);
    }
    return token;
}

std::string FormatUtc(std::chrono::system_clock::time_point time) {
    const auto day = std::chrono::floor<std::chrono::days>(time);
    const std::chrono::year_month_day date(day);
    const std::chrono::hh_mm_ss clock(std::chrono::floor<std::chrono::seconds>(time - day));
    char text[64];
    std::snprintf(text, sizeof text, "%04d-%02u-%02uT%02d:%02d:%02dZ",
                  static_cast<int>(date.year()), static_cast<unsigned>(date.month()),
                  static_cast<unsigned>(date.day()), static_cast<int>(clock.hours().count()),
                  static_cast<int>(clock.minutes().count()),
                  static_cast<int>(clock.seconds().count()));
    return text;
}

} // namespace brevint::service
