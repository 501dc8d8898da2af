#include "calls/Names.h"

#include "base/Ascii.h"

#include <algorithm>

namespace calls {

namespace {

bool IsControl(wchar_t c) {
    constexpr wchar_t kDelete = 0x7F;
    constexpr wchar_t kLastOfC1 = 0x9F;
    constexpr wchar_t kLineSeparator = 0x2028;
    constexpr wchar_t kParagraphSeparator = 0x2029;
    return c < L' ' || (c >= kDelete && c <= kLastOfC1) || c == kLineSeparator ||
           c == kParagraphSeparator;
}

} // namespace

bool IsIdentifier(std::wstring_view text) {
    return !text.empty() && std::ranges::all_of(text, [](wchar_t c) {
        return c < 0x80 && (base::IsLetterOrDigit(static_cast<char>(c)) ||
                            std::wstring_view(L"-_{}").find(c) != std::wstring_view::npos);
    });
}

bool IsItemName(std::wstring_view text) {
    return !text.empty() && text != L"." && text != L".." &&
           std::ranges::none_of(text, [](auto c) { return c == L'/' || IsControl(c); });
}

std::wstring EscapeForJson(std::wstring_view text) {
    std::wstring escaped;
    for (const wchar_t c : text) {
        if (c == L'"' || c == L'\\') {
            escaped += L'\\';
        }
        escaped += c;
    }
    return escaped;
}

} // namespace calls
