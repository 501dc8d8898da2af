#pragma once

// The platform's internet client. On Windows it is WinINet itself; on Linux the calls that the
// library makes exist under the same names, types and constants, over libcurl.

#ifdef _WIN32
#include <windows.h>

#include <wininet.h>

/// Whether closing a request ends a call that another thread is making on it. If not, it must not
/// be closed meanwhile.
inline constexpr bool kClosingEndsCalls = false;
/// Whether a request is closed as soon as its reply is there, and not only when nobody wants it any
/// more. Here a reply without a length may pass for whole while the server is still sending, and
/// closing would cut it off.
inline constexpr bool kClosesWhatIsOver = false;
#else
#include "platform/linux/WinInet.h"

inline constexpr bool kClosingEndsCalls = true;
inline constexpr bool kClosesWhatIsOver = true;
#endif
