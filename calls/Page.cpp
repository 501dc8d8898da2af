#include "calls/Page.h"

#include "base/Ascii.h"

#include <algorithm>
#include <array>

namespace calls {

bool IsPageType(std::wstring_view contentType) {
    const std::wstring_view type =
        base::Trim<wchar_t>(contentType.substr(0, contentType.find(L';')), L" \t");
    return base::EqualsIgnoreCase(type, L"text/html") ||
           base::EqualsIgnoreCase(type, L"application/xhtml+xml");
}

bool BeginsAsPage(std::string_view content) {
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    if (content.starts_with(kByteOrderMark)) {
        content.remove_prefix(kByteOrderMark.size());
    }
    content.remove_prefix(std::min(content.find_first_not_of(" \t\r\n"), content.size()));
    return std::ranges::any_of(
        std::array<std::string_view, 2>{"<!doctype html", "<html"}, [&](std::string_view begin) {
            return base::EqualsIgnoreCase(content.substr(0, begin.size()), begin);
        });
}

} // namespace calls
