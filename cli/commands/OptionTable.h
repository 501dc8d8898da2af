#pragma once

#include "cli/app/CommandLine.h"

#include <string>
#include <vector>

namespace brevint::cli {

/// An option or argument of the command line, as its grammar has it.
struct OptionEntry {
    std::vector<std::string> names;   ///< "-o", "--output"; none for an argument.
    std::string value;                ///< What it takes ("FILE"); empty for a flag.
    std::vector<std::string> choices; ///< The only values allowed, if there are only some.
    std::string defaultValue;
    std::string description;
    bool required = false;
    bool repeated = false; ///< Takes one value or more.
};

struct CommandEntry {
    std::string name;
    std::string summary;
    std::string notes;
    std::string examples; ///< One command line after the other.
    std::vector<OptionEntry> options;
    std::vector<OptionEntry> arguments;
};

/// The whole command line, read from its grammar for manual and completions. The program itself
/// comes first, with the options that every command takes.
std::vector<CommandEntry> ReadOptionTable(const CommandLine& commandLine);

} // namespace brevint::cli
