#pragma once

#include <string>
#include <string_view>

/// Conversion between UTF-8 and wide text. Malformed input becomes U+FFFD, piece by piece; nothing
/// throws but an allocation.
namespace Utf8 {

bool IsValid(std::string_view text);
/// The text with U+FFFD in place of what is malformed.
std::string Repaired(std::string_view text);

std::wstring ToWide(std::string_view text);
/// The same into a text that is there already, so that its memory serves many conversions.
void ToWide(std::string_view text, std::wstring& wide);
std::string ToNarrow(std::wstring_view text);

/// Appends one code point; one that does not exist becomes U+FFFD.
void AppendCodePoint(std::wstring& text, char32_t codePoint);

} // namespace Utf8
