#include "support/HttpEscape.h"

#include "base/Hex.h"
#include "support/Utf8.h"

#include <string_view>

namespace BaseHlpr {

std::string HttpEscape(const char* text, unsigned length) {
    constexpr std::string_view kKept = "*-._";
    std::string escaped;
    for (const char character : std::string_view(text, length)) {
        if (base::IsLetterOrDigit(character) || kKept.find(character) != std::string_view::npos) {
            escaped += character;
        } else if (character == ' ') {
            escaped += '+';
        } else {
            base::AppendPercentEscape(escaped, character);
        }
    }
    return escaped;
}

std::wstring HttpEscapeW(const wchar_t* text, unsigned length) {
    const std::string narrow = Utf8::ToNarrow(std::wstring_view(text, length));
    return Utf8::ToWide(HttpEscape(narrow.data(), static_cast<unsigned>(narrow.size())));
}

} // namespace BaseHlpr
