#pragma once

// The Windows types and general error codes that the declarations in this folder use.

#include <cstdint>

using BOOL = int;
using INT = int;
using UINT = unsigned int;
using WORD = std::uint16_t;
using DWORD = std::uint32_t;
using DWORD_PTR = std::uintptr_t;
using LPVOID = void*;
using LPCVOID = const void*;
using LPDWORD = DWORD*;
using LPSTR = char*;
using LPCSTR = const char*;
using LPWSTR = wchar_t*;
using LPCWSTR = const wchar_t*;

inline constexpr BOOL FALSE = 0;
inline constexpr BOOL TRUE = 1;

#define CALLBACK
#define WINAPI

inline constexpr DWORD ERROR_SUCCESS = 0;
inline constexpr DWORD ERROR_FILE_NOT_FOUND = 2;
inline constexpr DWORD ERROR_ACCESS_DENIED = 5;
inline constexpr DWORD ERROR_INVALID_HANDLE = 6;
inline constexpr DWORD ERROR_NOT_ENOUGH_MEMORY = 8;
inline constexpr DWORD ERROR_GEN_FAILURE = 31;
inline constexpr DWORD ERROR_INVALID_PARAMETER = 87;
inline constexpr DWORD ERROR_INSUFFICIENT_BUFFER = 122;
inline constexpr DWORD ERROR_NO_MORE_ITEMS = 259;
inline constexpr DWORD ERROR_IO_PENDING = 997;
inline constexpr DWORD ERROR_RESOURCE_NAME_NOT_FOUND = 1814;
inline constexpr DWORD ERROR_NOT_ENOUGH_QUOTA = 1816;
inline constexpr DWORD ERROR_INVALID_OPERATION = 4317;

/// The calling thread's last error.
DWORD GetLastError() noexcept;
void SetLastError(DWORD error) noexcept;
