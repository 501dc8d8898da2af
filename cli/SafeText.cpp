#include "cli/SafeText.h"

#include <utf8.h>

#include <algorithm>
#include <cstdio>
#include <iterator>

namespace brevint::cli {

namespace {

bool IsControl(char32_t c) {
    return c < 0x20 || (c >= 0x7F && c <= 0x9F);
}

/// Line separators, and what Unicode lets a display leave out or obey: with it two names could look
/// the same, or one like another. In order.
bool IsInvisible(char32_t c) {
    struct Range {
        char32_t first;
        char32_t last;
    };
    constexpr Range kRanges[] = {
        {0x00AD, 0x00AD},   {0x034F, 0x034F},   {0x061C, 0x061C}, {0x070F, 0x070F},
        {0x115F, 0x1160},   {0x17B4, 0x17B5},   {0x180B, 0x180F}, {0x200B, 0x200F},
        {0x2028, 0x202E},   {0x2060, 0x206F},   {0x3164, 0x3164}, {0xFE00, 0xFE0F},
        {0xFEFF, 0xFEFF},   {0xFFA0, 0xFFA0},   {0xFFF0, 0xFFFB}, {0x1BCA0, 0x1BCA3},
        {0x1D173, 0x1D17A}, {0xE0000, 0xE0FFF},
    };
    return std::any_of(std::begin(kRanges), std::end(kRanges),
                       [c](const Range& range) { return c >= range.first && c <= range.last; });
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
    return ReplaceUnsafe(text, IsUnsafe, [](char32_t) { return "\uFFFD"; });
}

std::string NeutraliseJson(std::string_view document) {
    return ReplaceUnsafe(
        document, [](char32_t c) { return IsUnsafe(c) && c != '\n'; }, JsonEscape);
}

} // namespace brevint::cli
