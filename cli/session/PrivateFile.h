#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace brevint::cli {

// Files that nobody but their owner may read. Whatever fails is thrown as a Failure.

/// The folder that holds the program's state; it need not exist.
std::filesystem::path StateFolder();

/// Makes the folder, for its owner only, where it is missing. One that belongs to somebody else or
/// that others may write to is refused.
void CreatePrivateFolder(const std::filesystem::path& folder);

/// Makes a new file that is its owner's alone from the start.
void CreatePrivateFile(const std::filesystem::path& path, std::string_view content);

/// The file's content; nothing when there is no such file. A file that others may read, or that
/// belongs to somebody else, is refused, and so is one in a folder that CreatePrivateFolder
/// refuses.
std::optional<std::string> ReadPrivateFile(const std::filesystem::path& path);

} // namespace brevint::cli
