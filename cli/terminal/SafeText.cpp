#include "cli/terminal/SafeText.h"

#include "support/Utf8.h"

#include <utf8.h>
#include <utf8proc.h>

#include <cstdio>
#include <iterator>

namespace brevint::cli {

namespace {

bool IsControl(char32_t c) {
    return c < 0x20 || (c >= 0x7F && c <= 0x9F);
}

/// Line separators, and what a display obeys or leaves out: with it two names could look the same,
/// or one like another.
bool IsInvisible(char32_t c) {
    const auto* const character = utf8proc_get_property(static_cast<utf8proc_int32_t>(c));
    switch (character->category) {
    case UTF8PROC_CATEGORY_CF:
    case UTF8PROC_CATEGORY_ZL:
    case UTF8PROC_CATEGORY_ZP: return true;
    default: return character->ignorable; // variation selectors and fillers
    }
}

bool IsUnsafe(char32_t c) {
    return IsControl(c) || IsInvisible(c);
}

std::string JsonEscape(char32_t c) {
    constexpr char32_t kFirstAstral = 0x10000;
    if (c >= kFirstAstral) {
        return JsonEscape(0xD800 + ((c - kFirstAstral) >> 10)) +
               JsonEscape(0xDC00 + ((c - kFirstAstral) & 0x3FF));
    }
    char escape[sizeof "\\uFFFF"];
    std::snprintf(escape, sizeof escape, "\\u%04x", static_cast<unsigned>(c) & 0xFFFFU);
    return escape;
}

/// `text` with every character for which `unsafe` holds replaced by `replace(character)`.
template <class Unsafe, class Replace>
std::string ReplaceUnsafe(std::string_view text, Unsafe unsafe, Replace replace) {
    const std::string valid = Utf8::Repaired(text);
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
    return ReplaceUnsafe(text, IsUnsafe, [](char32_t) { return "\uFFFD"; });
}

std::string NeutraliseJson(std::string_view document) {
    return ReplaceUnsafe(
        document, [](char32_t c) { return IsUnsafe(c) && c != '\n'; }, JsonEscape);
}

} // namespace brevint::cli
