#pragma once

#include <string>
#include <string_view>

namespace brevint::cli {

/// A table of docs/command-line.md, in Markdown. Empty when there is none of that name.
std::string DocumentTable(std::string_view name);

} // namespace brevint::cli
