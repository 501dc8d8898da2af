#include "support/HttpEscape.h"

#include "support/Utf8.h"

#include <string_view>

namespace BaseHlpr {

std::string HttpEscape(const char* text, unsigned length) {
    constexpr std::string_view kUnreserved = "ABCDEFGHIJKLMNOPQRSTUVWXYZ"
                                             "abcdefghijklmnopqrstuvwxyz"
                                             "0123456789*-._";
    constexpr std::string_view kHex = "0123456789ABCDEF";
    std::string escaped;
    for (const char character : std::string_view(text, length)) {
        const auto byte = static_cast<unsigned char>(character);
        if (kUnreserved.find(character) != std::string_view::npos) {
            escaped += character;
        } else if (character == ' ') {
            escaped += '+';
        } else {
            escaped += {'%', kHex[byte >> 4], kHex[byte & 0x0F]};
        }
    }
    return escaped;
}

std::wstring HttpEscapeW(const wchar_t* text, unsigned length) {
    const std::string narrow = Utf8::ToNarrow(std::wstring_view(text, length));
    return Utf8::ToWide(HttpEscape(narrow.data(), static_cast<unsigned>(narrow.size())));
}

} // namespace BaseHlpr
