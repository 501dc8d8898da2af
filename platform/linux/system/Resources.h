#pragma once

#include "platform/linux/Types.h"

using HINSTANCE = struct Module*;
using HMODULE = HINSTANCE;

/// The module of that name; null if it is not the one that this layer is linked into, for no other
/// is known here.
HMODULE GetModuleHandleA(LPCSTR name) noexcept;

inline constexpr DWORD GET_MODULE_HANDLE_EX_FLAG_PIN = 1;
inline constexpr DWORD GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS = 4;

/// Keeps the module that holds the address loaded. Here the linker has seen to that.
inline BOOL GetModuleHandleExW(DWORD /*flags*/, LPCWSTR /*address*/, HMODULE* module) noexcept {
    *module = nullptr;
    return TRUE;
}

/// Copies the text of the string resource, cut to size - 1 characters, and returns the number of
/// characters without the NUL. With size 0 the buffer receives a pointer to the resource's own
/// text.
int LoadStringW(HINSTANCE module, UINT id, LPWSTR buffer, int size) noexcept;
