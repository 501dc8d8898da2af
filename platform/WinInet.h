#pragma once

// The platform's internet client. On Windows it is WinINet itself; on Linux the calls that the
// library makes exist under the same names, types and constants, over libcurl.

#ifdef _WIN32
#include <windows.h>

#include <wininet.h>
#else
#include "platform/linux/WinInet.h"
#endif
