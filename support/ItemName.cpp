#include "support/ItemName.h"

#include "base/Ascii.h"

#include <algorithm>
#include <array>

namespace {

bool IsControl(wchar_t c) {
    constexpr wchar_t kDelete = 0x7F;
    constexpr wchar_t kLastOfC1 = 0x9F;
    constexpr wchar_t kLineSeparator = 0x2028;
    constexpr wchar_t kParagraphSeparator = 0x2029;
    return c < L' ' || (c >= kDelete && c <= kLastOfC1) || c == kLineSeparator ||
           c == kParagraphSeparator;
}

constexpr std::array<std::wstring_view, 4> kProgramEndings = {L".bat", L".cmd", L".exe", L".msi"};

} // namespace

bool IsItemName(std::wstring_view name) {
    return !name.empty() && name != L"." && name != L".." &&
           std::ranges::none_of(name, [](wchar_t c) { return c == L'/' || IsControl(c); });
}

bool IsFormName(std::wstring_view name) {
    return IsItemName(name) && name.find_first_of(L"\"\\") == std::wstring_view::npos;
}

bool IsProgramName(std::wstring_view name) {
    const std::wstring_view ending = name.substr(std::min(name.rfind(L'.'), name.size()));
    return std::ranges::any_of(kProgramEndings, [&](std::wstring_view program) {
        return base::EqualsIgnoreCase(ending, program);
    });
}
