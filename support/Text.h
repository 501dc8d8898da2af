#pragma once

#include <string>
#include <string_view>
#include <vector>

/// String editing that does not depend on the process's locale. Null pointers count as empty texts.
namespace BaseHlpr {

/// Replaces every occurrence of `what`, from left to right; replaced text is not searched again.
/// An empty `what` occurs nowhere.
std::wstring StringReplace(const wchar_t* text, const wchar_t* what, const wchar_t* with);
/// The same in place; `text` may hold zeros.
void StringReplace(std::wstring& text, const wchar_t* what, const wchar_t* with);

/// Replaces every character by the one that Unicode calls its lower case: one for one, whatever the
/// language and the characters around it.
std::wstring ToLower(const wchar_t* text);
/// The same for a text that may hold zeros.
std::wstring ToLower(std::wstring_view text);

/// Removes blanks, tabs, line ends, vertical tabs and form feeds at both ends.
std::wstring Trim(const wchar_t* text);

/// Appends the pieces of `text` between separators; with `dropEmpty` those that are not empty.
void Split(const wchar_t* text, std::vector<std::wstring>& out, const wchar_t* separator,
           bool dropEmpty);

} // namespace BaseHlpr
