#pragma once

#include "cli/output/ExitCode.h"

#include <string>
#include <vector>

namespace brevint::cli {

/// Runs the command that the arguments (UTF-8, without the program's name) ask for.
ExitCode RunApplication(const std::vector<std::string>& arguments);

} // namespace brevint::cli
