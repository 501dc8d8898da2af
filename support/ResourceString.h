#pragma once

#include <string>

namespace BaseHlpr {

/// Loads a string resource of a loaded module; empty when there is none.
std::wstring GetResourceString(unsigned id, const char* moduleName);

/// The text that tells the user that the service at `url` cannot be reached.
std::wstring ConnectionFailureMessage(const std::wstring& url);

} // namespace BaseHlpr
