#include "service/ByteRange.h"

#include <algorithm>
#include <charconv>
#include <limits>

namespace brevint::service {

namespace {

constexpr std::string_view kUnit = "bytes=";

} // namespace

std::optional<ByteRange> ReadRange(std::string_view header, std::uint64_t size) {
    if (!header.starts_with(kUnit)) {
        return std::nullopt;
    }
    const char* const end = header.data() + header.size();
    std::uint64_t first = 0;
    std::uint64_t last = std::numeric_limits<std::uint64_t>::max();
    auto read = std::from_chars(header.data() + kUnit.size(), end, first);
    if (read.ec != std::errc() || read.ptr == end || *read.ptr != '-') {
        return std::nullopt;
    }
    if (read.ptr + 1 != end) {
        read = std::from_chars(read.ptr + 1, end, last);
    } else {
        ++read.ptr;
    }
    if (read.ec != std::errc() || read.ptr != end || last < first) {
        return std::nullopt;
    }
    if (first >= size) {
        return ByteRange{};
    }
    return ByteRange{first, std::min(last, size - 1) - first + 1};
}

} // namespace brevint::service
