#pragma once

#include "support/windows/Handles.h"

#include <filesystem>
#include <string_view>
#include <system_error>

/// Why the system's last call failed.
inline std::error_code FileError(DWORD number = GetLastError()) {
    return {static_cast<int>(number), std::system_category()};
}

/// CreateFileW, whose other arguments these are.
HandlePtr OpenFile(const std::filesystem::path& path, DWORD access, DWORD share, DWORD disposition,
                   DWORD flags, PSECURITY_DESCRIPTOR descriptor = nullptr);

std::error_code WriteAll(HANDLE file, std::string_view bytes);
