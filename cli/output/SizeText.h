#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace brevint::cli {

/// The number of bytes that the service sent as text; nothing when it is none.
std::optional<std::uint64_t> ParseSize(std::string_view text);

/// "0 B", "1023 B", "1.0 KiB", "1.5 GiB", rounded down; the same in every locale.
std::string FormatSize(std::uint64_t bytes);

} // namespace brevint::cli
