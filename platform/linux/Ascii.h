#pragma once

#include <algorithm>
#include <string_view>

namespace platform {

// Text of protocols: letters and blanks are ASCII's, whatever the locale.

template <class Char>
constexpr Char Lower(Char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<Char>(c - 'A' + 'a') : c;
}

template <class Char>
constexpr bool EqualNames(std::basic_string_view<Char> a, std::basic_string_view<Char> b) {
    return std::ranges::equal(a, b, {}, Lower<Char>, Lower<Char>);
}

constexpr bool EqualNames(std::string_view a, std::string_view b) {
    return EqualNames<char>(a, b);
}

constexpr bool HasControls(std::string_view text) {
    return std::ranges::any_of(text, [](char c) {
        const auto byte = static_cast<unsigned char>(c);
        return byte < 0x20 || byte == 0x7F;
    });
}

// Without the blanks and tabs around it.
constexpr std::string_view Trim(std::string_view text) {
    constexpr std::string_view kBlanks = " \t";
    const std::size_t first = std::min(text.find_first_not_of(kBlanks), text.size());
    return text.substr(first, text.find_last_not_of(kBlanks) + 1 - first);
}

} // namespace platform
