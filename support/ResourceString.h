#pragma once

#include <string>

namespace BaseHlpr {

/// Loads a string resource of the module of that name; empty when it has none or is not loaded.
std::wstring GetResourceString(unsigned id, const char* moduleName);

/// The text that tells the user that the service at `url` cannot be reached.
std::wstring ConnectionFailureMessage(const std::wstring& url);

} // namespace BaseHlpr
