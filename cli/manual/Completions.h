#pragma once

#include <string>

namespace brevint::cli {

// The shells' completions: for commands, options, fixed values, and files and folders where those
// are meant. None of them asks a service.

std::string BashCompletion();
std::string ZshCompletion();
std::string FishCompletion();

} // namespace brevint::cli
