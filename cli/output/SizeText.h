#pragma once

#include <cstdint>
#include <string>

namespace brevint::cli {

/// "0 B", "1023 B", "1.0 KiB", "1.5 GiB", rounded down; the same in every locale.
std::string FormatSize(std::uint64_t bytes);

} // namespace brevint::cli
