#pragma once

#include "cli/commands/OptionTable.h"

#include <string>
#include <vector>

namespace brevint::cli {

/// The manual page brevint(1), in the man macros of roff.
std::string ManPage(const std::vector<CommandEntry>& table);

} // namespace brevint::cli
