#pragma once

#include <string>
#include <string_view>

namespace platform {

// The path and query that an object name stands for on the request line: absolute, without a
// fragment, in ASCII, and free of anything that could end the line. Escapes already there stay.
std::string RequestTarget(std::wstring_view objectName);

} // namespace platform
