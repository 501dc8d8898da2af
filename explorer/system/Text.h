#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

namespace brevint::explorer {

/// Malformed text never fails: what is malformed in it becomes U+FFFD.
std::wstring Wide(std::string_view utf8);
std::string Utf8(std::wstring_view wide);

/// A text of the program's string table.
std::wstring Text(unsigned id);
/// The same with the arguments in place of "%1" to "%9".
std::wstring Text(unsigned id, std::initializer_list<std::wstring_view> arguments);

/// A name as it is shown. Characters that cannot be seen or that turn the direction of writing, by
/// which "txt.exe" can be made to look like "exe.txt", become U+FFFD.
std::wstring DisplayText(std::wstring_view name);

/// In lower case, for comparisons that are indifferent to case.
std::wstring FoldCase(std::wstring_view text);

} // namespace brevint::explorer
