#pragma once

#include "transfers/TransferState.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace transfers {

/// What a Content-Range header says. What it leaves open, with "*", is kUnknownSize.
struct ContentRange {
    std::uint64_t first = kUnknownSize;
    std::uint64_t last = kUnknownSize;
    std::uint64_t total = kUnknownSize;
};

/// Reads "bytes 4-9/10", "bytes 4-9/*" and "bytes */10". Nothing for any other text.
std::optional<ContentRange> ParseContentRange(std::string_view text);

/// Reads "Sun, 06 Nov 1994 08:49:37 GMT", as seconds since 1970. Nothing for any other text.
std::optional<std::int64_t> ParseHttpDate(std::string_view text);

} // namespace transfers
