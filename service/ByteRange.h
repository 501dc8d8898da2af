#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace brevint::service {

/// A part of a file's content.
struct ByteRange {
    std::uint64_t offset = 0;
    std::uint64_t length = 0;
};

/// What a Range header asks for of a content of `size` bytes: "bytes=N-" or "bytes=N-M". Its length
/// is 0 where it begins after the content's end. Nothing for any other header, which a server is
/// free to answer with the whole.
std::optional<ByteRange> ReadRange(std::string_view header, std::uint64_t size);

} // namespace brevint::service
