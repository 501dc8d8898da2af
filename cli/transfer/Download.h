#pragma once

#include "cli/run/Context.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

namespace brevint::cli {

/// A file of the service that is to be downloaded.
struct RemoteFile {
    std::wstring id;
    std::string name;                  ///< How it is called in messages.
    std::optional<std::uint64_t> size; ///< In bytes, as listed; nothing when that is not known.
};

/// Downloads a file to `target` as LocalFileWriter writes files: whatever goes wrong, an old file
/// stays as it was and nothing else is left behind. A pipe or device gets nothing unless all has
/// come. What has another size than listed counts as incomplete. Returns the number of bytes.
std::uintmax_t Download(Context& context, const RemoteFile& file,
                        const std::filesystem::path& target);

/// The same to standard output.
std::uintmax_t DownloadToOutput(Context& context, const RemoteFile& file);

} // namespace brevint::cli
