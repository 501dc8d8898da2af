#pragma once

#include <cstdint>
#include <filesystem>
#include <system_error>

/// What stands at a local path. Links are not followed.
struct LocalItem {
    enum class Kind {
        Missing,
        Folder,
        File,
        Other, ///< A link, a junction, a device, a pipe, or what the system tells nothing of.
    };
    Kind kind = Kind::Missing;
    std::uint64_t bytes = 0;   ///< Of a file.
    std::int64_t modified = 0; ///< Of a file: seconds since 1970, UTC.
};

LocalItem LookAtLocalItem(const std::filesystem::path& path);

/// Sets when a file was last written to, in seconds since 1970, UTC.
std::error_code SetLocalFileTime(const std::filesystem::path& path, std::int64_t modified);
