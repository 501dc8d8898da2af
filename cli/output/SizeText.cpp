#include "cli/output/SizeText.h"

#include <array>

namespace brevint::cli {

std::string FormatSize(std::uint64_t bytes) {
    constexpr std::array kUnits = {" KiB", " MiB", " GiB", " TiB", " PiB", " EiB"};
    if (bytes < 1024) {
        return std::to_string(bytes) + " B";
    }
    std::uint64_t tenths = bytes / 1024 * 10 + bytes % 1024 * 10 / 1024;
    std::size_t unit = 0;
    for (; tenths >= 1024 * 10; tenths /= 1024) {
        ++unit;
    }
    return std::to_string(tenths / 10) + "." + std::to_string(tenths % 10) + kUnits[unit];
}

} // namespace brevint::cli
