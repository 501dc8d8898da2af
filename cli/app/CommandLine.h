#pragma once

#include "cli/commands/Commands.h"

#include <optional>
#include <string>
#include <vector>

namespace brevint::cli {

/// What a command line asks for.
struct Request {
    const CommandRow& command;
    Options options;
};

/// Reads the arguments (UTF-8, without the program's name). Nothing when they asked for help or the
/// version, which has then been printed. Throws a Failure when they are wrong.
std::optional<Request> ParseCommandLine(std::vector<std::string> arguments);

} // namespace brevint::cli
