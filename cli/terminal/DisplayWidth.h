#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace brevint::cli {

/// The number of columns that valid UTF-8 text covers on a terminal: East Asian characters and
/// emoji take two, combining marks none.
std::size_t DisplayWidth(std::string_view text);

/// The text, or "…" and as much of its end as `columns` hold.
std::string ShortenFront(std::string_view text, std::size_t columns);

} // namespace brevint::cli
