#include "cli/SafeText.h"

#include <utf8.h>

#include <cstdio>
#include <iterator>

namespace brevint::cli {

namespace {

bool IsControl(char32_t c) {
    return c < 0x20 || (c >= 0x7F && c <= 0x9F);
}

/// Line separators and the marks that override the direction of writing.
bool IsLayoutControl(char32_t c) {
    return c == 0x061C || c == 0x200E || c == 0x200F || (c >= 0x2028 && c <= 0x202E) ||
           (c >= 0x2066 && c <= 0x2069);
}

/// `text` with every character for which `unsafe` holds replaced by `replace(character)`.
template <class Unsafe, class Replace>
std::string ReplaceUnsafe(std::string_view text, Unsafe unsafe, Replace replace) {
    std::string valid;
    utf8::replace_invalid(text.begin(), text.end(), std::back_inserter(valid));
    std::string safe;
    for (auto next = valid.cbegin(); next != valid.cend();) {
        const char32_t c = utf8::unchecked::next(next);
        if (unsafe(c)) {
            safe += replace(c);
        } else {
            utf8::unchecked::append(c, std::back_inserter(safe));
        }
    }
    return safe;
}

} // namespace

std::string Neutralise(std::string_view text) {
    return ReplaceUnsafe(
        text, [](char32_t c) { return IsControl(c) || IsLayoutControl(c); },
        [](char32_t) { return "\uFFFD"; });
}

std::string NeutraliseJson(std::string_view document) {
    return ReplaceUnsafe(
        document, [](char32_t c) { return (IsControl(c) && c != '\n') || IsLayoutControl(c); },
        [](char32_t c) {
            char escape[sizeof "\\uFFFF"];
            std::snprintf(escape, sizeof escape, "\\u%04x", static_cast<unsigned>(c) & 0xFFFFU);
            return std::string(escape);
        });
}

} // namespace brevint::cli
