#pragma once

#include "platform/linux/WinInet.h"

#include <curl/curl.h>

namespace platform {

/// The WinINet error for the outcome of the easy handle's transfer; ERROR_SUCCESS for CURLE_OK.
DWORD CurlError(CURL* easy, CURLcode outcome) noexcept;

} // namespace platform
