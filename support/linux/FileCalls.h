#pragma once

#include <cerrno>
#include <string_view>
#include <system_error>

#include <sys/stat.h>

/// Why the system's last call failed.
inline std::error_code FileError(int number = errno) {
    return {number, std::generic_category()};
}

inline bool IsSameFile(const struct stat& one, const struct stat& other) {
    return one.st_dev == other.st_dev && one.st_ino == other.st_ino;
}

std::error_code WriteAll(int file, std::string_view bytes);

/// What some file systems say of failed writes no earlier than when a file is closed; for one that
/// stays open.
std::error_code LateWriteError(int file);
