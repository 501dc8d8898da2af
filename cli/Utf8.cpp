#include "cli/Utf8.h"

#include <utf8.h>

#include <iterator>

namespace brevint::cli {

namespace {

constexpr char32_t kReplacement = 0xFFFD;

bool IsSurrogate(char32_t unit) {
    return unit >= 0xD800 && unit <= 0xDFFF;
}
bool IsHighSurrogate(char32_t unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}
bool IsLowSurrogate(char32_t unit) {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

} // namespace

std::wstring ToWide(std::string_view utf8) {
    std::string valid;
    utf8::replace_invalid(utf8.begin(), utf8.end(), std::back_inserter(valid));
    std::wstring wide;
    for (auto next = valid.cbegin(); next != valid.cend();) {
        const char32_t c = utf8::unchecked::next(next);
        if (sizeof(wchar_t) == 2 && c > 0xFFFF) {
            wide += static_cast<wchar_t>(0xD7C0 + (c >> 10));
            wide += static_cast<wchar_t>(0xDC00 + (c & 0x3FF));
        } else {
            wide += static_cast<wchar_t>(c);
        }
    }
    return wide;
}

std::string ToUtf8(std::wstring_view wide) {
    std::string utf8;
    for (std::size_t i = 0; i < wide.size(); ++i) {
        auto c = static_cast<char32_t>(wide[i]);
        const char32_t next = i + 1 < wide.size() ? static_cast<char32_t>(wide[i + 1]) : 0;
        if (IsHighSurrogate(c) && IsLowSurrogate(next)) {
            c = 0x10000 + ((c - 0xD800) << 10) + (next - 0xDC00);
            ++i;
        }
        utf8::append(IsSurrogate(c) || c > 0x10FFFF ? kReplacement : c, std::back_inserter(utf8));
    }
    return utf8;
}

std::filesystem::path ToPath(std::string_view utf8) {
    return std::filesystem::path(std::u8string(utf8.begin(), utf8.end()));
}

std::string PathToUtf8(const std::filesystem::path& path) {
    const std::u8string text = path.u8string();
    return {text.begin(), text.end()};
}

} // namespace brevint::cli
