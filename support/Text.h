#pragma once

#include <string>
#include <vector>

/// String editing that does not depend on the process's locale. Null pointers count as empty texts.
namespace BaseHlpr {

/// Replaces every occurrence of `what`, from left to right; replaced text is not searched again.
/// An empty `what` occurs nowhere.
std::wstring StringReplace(const wchar_t* text, const wchar_t* what, const wchar_t* with);
void StringReplace(std::wstring& text, const wchar_t* what, const wchar_t* with);

/// Lower-cases every character of the Latin, Greek, Cyrillic and Armenian scripts that has a
/// single lower-case form.
std::wstring ToLower(const wchar_t* text);

/// Removes blanks, tabs, line ends, vertical tabs and form feeds at both ends.
std::wstring Trim(const wchar_t* text);

/// Appends the pieces of `text` between separators; with `dropEmpty` those that are not empty.
void Split(const wchar_t* text, std::vector<std::wstring>& out, const wchar_t* separator,
           bool dropEmpty);

} // namespace BaseHlpr
