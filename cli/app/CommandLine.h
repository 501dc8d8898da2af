#pragma once

#include "cli/commands/Command.h"
#include "cli/run/Context.h"

#include <memory>
#include <string>
#include <vector>

namespace brevint::cli {

/// A session from the beginning to the end, one command line after the other.
extern const char kExamples[];

/// The program's only table of commands and options. The command line is parsed by it; manual and
/// completions are made from it.
class CommandLine {
public:
    CommandLine();
    CommandLine(const CommandLine&) = delete;
    CommandLine& operator=(const CommandLine&) = delete;
    ~CommandLine();

    const CLI::App& Grammar() const { return *m_app; }
    const Options& Settings() const { return m_options; }

    /// The command that the arguments name, with its options. Null when they asked for help or the
    /// version, which has then been printed. Throws a Failure when they are wrong.
    Command* Parse(std::vector<std::string> arguments);

private:
    Options m_options;
    std::unique_ptr<CLI::App> m_app;
    std::vector<std::unique_ptr<Command>> m_commands; ///< One for each row of AllCommands.
};

} // namespace brevint::cli
