#pragma once

#include <string>
#include <string_view>

namespace calls {

/// Whether a text can be an identifier: letters, digits, "-", "_", "{" and "}". It goes into
/// addresses and documents as it is.
bool IsIdentifier(std::wstring_view text);

/// A text as it stands between the quotes of a JSON string. It has no control characters.
std::wstring EscapeForJson(std::wstring_view text);

} // namespace calls
