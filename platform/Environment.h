#pragma once

// Environment variables by wide name: _wgetenv.

#include <cstdlib>

#ifdef _WIN32
#include <wchar.h>
#else
#include "platform/linux/system/Environment.h"
#endif
