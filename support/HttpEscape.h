#pragma once

#include <string>

namespace BaseHlpr {

/// Escapes `length` characters for an application/x-www-form-urlencoded body: letters, digits and
/// "*-._" stay, a blank becomes "+", every other byte of the UTF-8 form becomes %XX.
std::wstring HttpEscapeW(const wchar_t* text, unsigned length);
std::string HttpEscape(const char* text, unsigned length);

} // namespace BaseHlpr
