#include "explorer/system/Text.h"

#include <windows.h>

namespace brevint::explorer {

namespace {

bool MisleadsTheEye(wchar_t character) {
    return character < 0x20 || (character >= 0x7F && character < 0xA0) || // control characters
           character == 0x061C ||
           (character >= 0x200B && character <= 0x200F && character != 0x200C &&
            character != 0x200D) ||
           (character >= 0x2028 && character <= 0x202E) ||
           (character >= 0x2060 && character <= 0x206F) || character == 0xFEFF;
}

} // namespace

std::wstring Wide(std::string_view utf8) {
    const int size = static_cast<int>(utf8.size());
    std::wstring wide(
        static_cast<std::size_t>(MultiByteToWideChar(CP_UTF8, 0, utf8.data(), size, nullptr, 0)),
        L'\0');
    MultiByteToWideChar(CP_UTF8, 0, utf8.data(), size, wide.data(), static_cast<int>(wide.size()));
    return wide;
}

std::string Utf8(std::wstring_view wide) {
    const int size = static_cast<int>(wide.size());
    std::string utf8(static_cast<std::size_t>(WideCharToMultiByte(CP_UTF8, 0, wide.data(), size,
                                                                  nullptr, 0, nullptr, nullptr)),
                     '\0');
    WideCharToMultiByte(CP_UTF8, 0, wide.data(), size, utf8.data(), static_cast<int>(utf8.size()),
                        nullptr, nullptr);
    return utf8;
}

std::wstring Text(unsigned id) {
    // With no room for a copy it gives the place of the text itself.
    const wchar_t* text = nullptr;
    const int length =
        LoadStringW(GetModuleHandleW(nullptr), id, reinterpret_cast<wchar_t*>(&text), 0);
    return {text, static_cast<std::size_t>(length)};
}

std::wstring Text(unsigned id, std::initializer_list<std::wstring_view> arguments) {
    const std::wstring pattern = Text(id);
    std::wstring text;
    for (std::size_t i = 0; i < pattern.size(); ++i) {
        const std::size_t number = pattern[i] == L'%' && i + 1 < pattern.size()
                                       ? static_cast<std::size_t>(pattern[i + 1] - L'1')
                                       : arguments.size();
        if (number < arguments.size()) {
            text += arguments.begin()[number];
            ++i;
        } else {
            text += pattern[i];
        }
    }
    return text;
}

std::wstring DisplayText(std::wstring_view name) {
    std::wstring shown(name);
    for (wchar_t& character : shown) {
        if (MisleadsTheEye(character)) {
            character = L'\xFFFD';
        }
    }
    return shown;
}

std::wstring FoldCase(std::wstring_view text) {
    std::wstring folded(text);
    CharLowerBuffW(folded.data(), static_cast<DWORD>(folded.size()));
    return folded;
}

} // namespace brevint::explorer
