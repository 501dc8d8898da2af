#pragma once

#include <string>
#include <string_view>

namespace platform {

/// The path and query that an object name stands for on the request line: absolute, without a
/// fragment, in ASCII, and free of anything that could end the line. Escapes already there stay.
std::string RequestTarget(std::wstring_view objectName);

/// The same of a URL or a reference, as far as it is about characters: in ASCII, without blanks and
/// control characters, and with a slash for each backslash before the query. A fragment stays.
std::string EscapeReference(std::string_view reference);

} // namespace platform
