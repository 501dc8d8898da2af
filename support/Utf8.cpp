#include "support/Utf8.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <iterator>
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

/// The length of the ASCII that a text begins with. Most texts are nothing else, so eight bytes are
/// looked at together.
std::size_t AsciiLength(std::string_view text) {
    constexpr std::uint64_t kHighBits = 0x8080808080808080;
    std::size_t length = 0;
    for (std::uint64_t bytes = 0; text.size() - length >= sizeof bytes; length += sizeof bytes) {
        std::memcpy(&bytes, text.data() + length, sizeof bytes);
        if ((bytes & kHighBits) != 0) {
            break;
        }
    }
    while (length < text.size() && static_cast<unsigned char>(text[length]) < 0x80) {
        ++length;
    }
    return length;
}

/// The length of the other bytes that a text begins with. They end where a character ends.
std::size_t OtherLength(std::string_view text) {
    const auto end = std::ranges::find_if(
        text, [](char byte) { return static_cast<unsigned char>(byte) < 0x80; });
    return static_cast<std::size_t>(end - text.begin());
}

void AppendValid(std::wstring& wide, std::string_view text) {
    if constexpr (kWideIsUtf16) {
        utf8::unchecked::utf8to16(text.begin(), text.end(), std::back_inserter(wide));
    } else {
        utf8::unchecked::utf8to32(text.begin(), text.end(), std::back_inserter(wide));
    }
}

} // namespace

bool IsValid(std::string_view text) {
    while (!text.empty()) {
        text.remove_prefix(AsciiLength(text));
        const std::string_view other = text.substr(0, OtherLength(text));
        if (!utf8::is_valid(other.begin(), other.end())) {
            return false;
        }
        text.remove_prefix(other.size());
    }
    return true;
}

std::string Repaired(std::string_view text) {
    if (IsValid(text)) {
        return std::string(text);
    }
    std::string repaired;
    repaired.reserve(text.size());
    utf8::replace_invalid(text.begin(), text.end(), std::back_inserter(repaired), kReplacement);
    return repaired;
}

std::wstring ToWide(std::string_view text) {
    std::wstring wide;
    ToWide(text, wide);
    return wide;
}

void ToWide(std::string_view text, std::wstring& wide) {
    const std::size_t ascii = AsciiLength(text);
    wide.resize(ascii);
    std::copy_n(text.begin(), ascii, wide.begin());
    text.remove_prefix(ascii);
    if (text.empty()) {
        return;
    }
    wide.reserve(ascii + text.size());
    if (utf8::is_valid(text.begin(), text.end())) {
        AppendValid(wide, text);
    } else {
        AppendValid(wide, Repaired(text));
    }
}

std::string ToNarrow(std::wstring_view text) {
    const auto ascii = std::ranges::find_if(
        text, [](wchar_t unit) { return static_cast<char32_t>(unit) >= 0x80; });
    std::string narrow(static_cast<std::size_t>(ascii - text.begin()), '\0');
    std::transform(text.begin(), ascii, narrow.begin(),
                   [](wchar_t unit) { return static_cast<char>(unit); });
    text.remove_prefix(narrow.size());
    narrow.reserve(narrow.size() + text.size());
    while (!text.empty()) {
        const char32_t codePoint = NextCodePoint(text);
        if (codePoint < 0x80) {
            narrow.push_back(static_cast<char>(codePoint));
        } else {
            utf8::unchecked::append(IsCodePoint(codePoint) ? codePoint : kReplacement,
                                    std::back_inserter(narrow));
        }
    }
    return narrow;
}

char32_t NextCodePoint(std::wstring_view& text) {
    const auto first = static_cast<char32_t>(text.front());
    text.remove_prefix(1);
    if (!kWideIsUtf16 || !IsLeadSurrogate(first) || text.empty()) {
        return first;
    }
    const auto second = static_cast<char32_t>(text.front());
    if (!IsTrailSurrogate(second)) {
        return first;
    }
    text.remove_prefix(1);
    return 0x10000 + ((first - 0xD800) << 10) + (second - 0xDC00);
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
