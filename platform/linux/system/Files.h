#pragma once

#include "platform/linux/Types.h"

#include <cstdint>
#include <cstdio>

inline constexpr DWORD FILE_ATTRIBUTE_READONLY = 0x1;
inline constexpr DWORD FILE_ATTRIBUTE_DIRECTORY = 0x10;
inline constexpr DWORD FILE_ATTRIBUTE_NORMAL = 0x80;
inline constexpr DWORD INVALID_FILE_ATTRIBUTES = 0xFFFFFFFF;

/// File names are UTF-8 on disk. As on Windows a directory cannot be opened, and a read-only file
/// (no write permission for its owner, whoever asks) can be neither written nor deleted. Reading is
/// for regular files, and a pipe is not written to either: it is refused rather than waited for.
std::FILE* _wfopen(const wchar_t* name, const wchar_t* mode) noexcept;
int _fseeki64(std::FILE* file, std::int64_t offset, int origin) noexcept;
std::int64_t _ftelli64(std::FILE* file) noexcept;

/// A link is deleted itself, and has attributes of its own: what it leads to is left alone.
BOOL DeleteFileW(LPCWSTR name) noexcept;
DWORD GetFileAttributesW(LPCWSTR name) noexcept;
/// Only FILE_ATTRIBUTE_READONLY has a meaning, and only for files: everything else is accepted and
/// changes nothing.
BOOL SetFileAttributesW(LPCWSTR name, DWORD attributes) noexcept;
