#pragma once

#include "cli/output/ExitCode.h"
#include "cli/run/Options.h"

#include <span>
#include <string>
#include <variant>
#include <vector>

namespace brevint::cli {

class Context;

/// What an option or argument takes, and how shells complete it.
struct Value {
    enum class Kind { Nothing, Any, File, Folder, Choice };

    Kind kind = Kind::Nothing;
    const char* name = "";    ///< "FILE"
    const char* choices = ""; ///< The only values of Kind::Choice: "put replace".
};

struct ShowsHelp {};
struct ShowsVersion {};

/// What an option or argument does: it fills a variable, or it shows something.
using Effect = std::variant<ShowsHelp, ShowsVersion, bool Options::*, std::uint32_t Options::*,
                            std::string Options::*, std::vector<std::string> Options::*>;

struct OptionRow {
    const char* names; ///< "-o,--output"; without hyphens that of an argument.
    Value value;
    Effect effect;
    const char* meaning; ///< A sentence without its full stop.
    bool isRequired = false;
    const char* excludes = ""; ///< The option before this one, if they cannot be given together.

    bool IsArgument() const { return names[0] != '-'; }
    bool IsRepeated() const;
    std::string Default() const;                  ///< What holds when it is left out.
    std::vector<std::string> OptionNames() const; ///< "-o", "--output"; none of an argument.
    std::vector<std::string> Choices() const;
};

struct CommandRow {
    const char* name;
    const char* summary; ///< A sentence without its full stop.
    const char* notes;   ///< What else there is to know, in lines of up to 80 characters; or "".
    std::span<const OptionRow> options; ///< The arguments in their order, and the options.
    const char* document;               ///< What --json prints, with names in backticks.
    const char* examples;               ///< One command line after the other.
    ExitCode (*run)(Context& context);  ///< Throws a Failure when it comes to nothing.

    /// The command line: "get ITEM... [-o FILE | -d FOLDER]".
    std::string Synopsis() const;
};

/// The program itself: what every command takes, and a session from the beginning to the end.
extern const CommandRow kProgram;

/// All commands, in the order in which the help shows them. The command line is parsed by this
/// table; manual page, completions and the tables in docs/command-line.md are made from it.
std::span<const CommandRow> AllCommands();

} // namespace brevint::cli
