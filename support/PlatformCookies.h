#pragma once

#include <string>

namespace BaseHlpr {

/// The cookies that the process's jar would send to `url` and that scripts may see, as
/// "name=value; name=value"; empty when there are none.
std::wstring GetPlatformCookies(const wchar_t* url);

} // namespace BaseHlpr
