#pragma once

#include "cli/Context.h"

#include <cstdint>
#include <filesystem>
#include <string>

namespace brevint::cli {

/// Downloads a file of the service to `target`, which is replaced in one step once all is there:
/// whatever goes wrong, an old file stays as it was and nothing else is left behind. Returns the
/// number of bytes; `name` is how the file is called in messages.
std::uintmax_t Download(Context& context, const std::wstring& fileId, const std::string& name,
                        const std::filesystem::path& target);

} // namespace brevint::cli
