#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace brevint::cli {

/// The last segment of an item's path (UTF-8), if it can safely be the name of a local file in
/// whatever folder: on no target does it lead elsewhere, name a device or turn into another name.
std::optional<std::string> SafeFileName(std::string_view itemPath);

} // namespace brevint::cli
