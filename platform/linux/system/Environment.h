#pragma once

/// Value of an environment variable, null when it is not set. Valid until the calling thread asks
/// again.
wchar_t* _wgetenv(const wchar_t* name) noexcept;
