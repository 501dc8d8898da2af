#pragma once

#include "cli/commands/OptionTable.h"

#include <string>
#include <vector>

namespace brevint::cli {

// The shells' completions: for commands, options, fixed values, and files and folders where those
// are meant. None of them asks a service.

std::string BashCompletion(const std::vector<CommandEntry>& table);
std::string ZshCompletion(const std::vector<CommandEntry>& table);
std::string FishCompletion(const std::vector<CommandEntry>& table);

} // namespace brevint::cli
