#pragma once

// Threads that nobody waits for.

#ifdef _WIN32
#include "platform/windows/Thread.h"
#else
#include "platform/linux/system/Thread.h"
#endif
