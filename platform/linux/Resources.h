#pragma once

#include "platform/linux/Types.h"

using HINSTANCE = struct Module*;
using HMODULE = HINSTANCE;

// The layer is linked into one module, so every name leads to that module's strings.
HMODULE GetModuleHandleA(LPCSTR name) noexcept;

// Copies the text of the string resource, cut to size - 1 characters, and returns the number of
// characters without the NUL. With size 0 the buffer receives a pointer to the resource's own text.
int LoadStringW(HINSTANCE module, UINT id, LPWSTR buffer, int size) noexcept;
