#pragma once

// Files by wide name: _wfopen, _fseeki64, _ftelli64, DeleteFileW, GetFileAttributesW and
// SetFileAttributesW, with the standard stdio for everything in between.

#include <cstdio>
#include <cwchar>

#ifdef _WIN32
#include <windows.h>
#else
#include "platform/linux/system/Files.h"
#endif
