#pragma once

#include <string>
#include <string_view>

/// Conversion between UTF-8 and wide text. Malformed input ends no text: each malformed sequence
/// becomes U+FFFD. Only running out of memory throws.
namespace Utf8 {

bool IsValid(std::string_view text);
/// The text with U+FFFD in place of what is malformed.
std::string Repaired(std::string_view text);

std::wstring ToWide(std::string_view text);
/// The same into `wide`, whose memory is used again: for those who convert many texts.
void ToWide(std::string_view text, std::wstring& wide);
std::string ToNarrow(std::wstring_view text);

/// Takes the first code point off a text, which must not be empty. What is none, such as half a
/// surrogate pair, is taken by itself and returned as it is.
char32_t NextCodePoint(std::wstring_view& text);

/// Appends one code point; one that does not exist becomes U+FFFD.
void AppendCodePoint(std::wstring& text, char32_t codePoint);

} // namespace Utf8
