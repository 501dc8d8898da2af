#pragma once

// String resources of a module: GetModuleHandleA and LoadStringW.

#ifdef _WIN32
#include <windows.h>
#else
#include "platform/linux/system/Resources.h"
#endif
