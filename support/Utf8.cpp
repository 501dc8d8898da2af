#include "support/Utf8.h"

#include <utf8.h>

namespace Utf8 {
namespace {

constexpr char32_t kReplacement = 0xFFFD;
constexpr bool kWideIsUtf16 = sizeof(wchar_t) == 2;

bool IsLeadSurrogate(char32_t unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}

bool IsTrailSurrogate(char32_t unit) {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

bool IsCodePoint(char32_t value) {
    return value <= 0x10FFFF && !IsLeadSurrogate(value) && !IsTrailSurrogate(value);
}

std::wstring ValidToWide(std::string_view text) {
    std::wstring wide;
    wide.reserve(text.size());
    if constexpr (kWideIsUtf16) {
        utf8::unchecked::utf8to16(text.begin(), text.end(), std::back_inserter(wide));
    } else {
        utf8::unchecked::utf8to32(text.begin(), text.end(), std::back_inserter(wide));
    }
    return wide;
}

} // namespace

std::wstring ToWide(std::string_view text) {
    if (utf8::is_valid(text.begin(), text.end())) {
        return ValidToWide(text);
    }
    std::string repaired;
    repaired.reserve(text.size());
    utf8::replace_invalid(text.begin(), text.end(), std::back_inserter(repaired), kReplacement);
    return ValidToWide(repaired);
}

std::string ToNarrow(std::wstring_view text) {
    std::string narrow;
    narrow.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        char32_t codePoint = static_cast<char32_t>(text[i]);
        if (kWideIsUtf16 && IsLeadSurrogate(codePoint) && i + 1 < text.size() &&
            IsTrailSurrogate(static_cast<char32_t>(text[i + 1]))) {
            ++i;
            codePoint =
                0x10000 + ((codePoint - 0xD800) << 10) + (static_cast<char32_t>(text[i]) - 0xDC00);
        }
        if (codePoint < 0x80) {
            narrow.push_back(static_cast<char>(codePoint));
        } else {
            utf8::unchecked::append(IsCodePoint(codePoint) ? codePoint : kReplacement,
                                    std::back_inserter(narrow));
        }
    }
    return narrow;
}

void AppendCodePoint(std::wstring& text, char32_t codePoint) {
    if (!IsCodePoint(codePoint)) {
        codePoint = kReplacement;
    }
    if (kWideIsUtf16 && codePoint >= 0x10000) {
        text.push_back(static_cast<wchar_t>(0xD800 + ((codePoint - 0x10000) >> 10)));
        text.push_back(static_cast<wchar_t>(0xDC00 + ((codePoint - 0x10000) & 0x3FF)));
    } else {
        text.push_back(static_cast<wchar_t>(codePoint));
    }
}

} // namespace Utf8
