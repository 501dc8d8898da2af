#include "transport/EscapeControls.h"

#include "support/Utf8.h"

std::wstring EscapeControls(const std::wstring& url) {
    constexpr wchar_t kDigits[] = L"0123456789ABCDEF";
    std::wstring escaped;
    escaped.reserve(url.size());
    for (const wchar_t c : url) {
        if (c >= L' ' && (c < L'\x7F' || c > L'\x9F')) {
            escaped += c;
            continue;
        }
        for (const char byte : Utf8::ToNarrow({&c, 1})) {
            const auto value = static_cast<unsigned char>(byte);
            escaped += {L'%', kDigits[value >> 4], kDigits[value & 0xF]};
        }
    }
    return escaped;
}
