#include "calls/Names.h"

#include "base/Ascii.h"

#include <algorithm>

namespace calls {

bool IsIdentifier(std::wstring_view text) {
    return !text.empty() && std::ranges::all_of(text, [](wchar_t c) {
        return c < 0x80 && (base::IsLetterOrDigit(static_cast<char>(c)) ||
                            std::wstring_view(L"-_{}").find(c) != std::wstring_view::npos);
    });
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
