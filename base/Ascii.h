#pragma once

#include <algorithm>
#include <string>
#include <string_view>

/// What protocols and formats mean by letters, digits and blanks: ASCII's, whatever the locale.
/// Other characters are none of these and have no case.
namespace base {

template <class Char>
constexpr Char Lower(Char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<Char>(c - 'A' + 'a') : c;
}

template <class Char>
constexpr bool IsLetter(Char c) {
    return Lower(c) >= 'a' && Lower(c) <= 'z';
}

template <class Char>
constexpr bool IsDigit(Char c) {
    return c >= '0' && c <= '9';
}

template <class Char>
constexpr bool IsLetterOrDigit(Char c) {
    return IsLetter(c) || IsDigit(c);
}

constexpr bool IsControl(char c) {
    return (c >= 0 && c < ' ') || c == '\x7F';
}

constexpr bool HasControls(std::string_view text) {
    return std::ranges::any_of(text, IsControl);
}

inline std::string ToLower(std::string_view text) {
    std::string lower(text);
    std::ranges::transform(lower, lower.begin(), Lower<char>);
    return lower;
}

constexpr bool EqualsIgnoreCase(std::string_view a, std::string_view b) {
    return std::ranges::equal(a, b, {}, Lower<char>, Lower<char>);
}

constexpr bool EqualsIgnoreCase(std::wstring_view a, std::wstring_view b) {
    return std::ranges::equal(a, b, {}, Lower<wchar_t>, Lower<wchar_t>);
}

/// The text without those of the `blanks` that stand at its ends.
template <class Char>
constexpr std::basic_string_view<Char> Trim(std::basic_string_view<Char> text,
                                            std::basic_string_view<Char> blanks) {
    const std::size_t first = std::min(text.find_first_not_of(blanks), text.size());
    return text.substr(first, text.find_last_not_of(blanks) + 1 - first);
}

/// The text without the blanks and tabs at its ends.
constexpr std::string_view Trim(std::string_view text) {
    return Trim<char>(text, " \t");
}

} // namespace base
