#pragma once

#include "cli/commands/OptionList.h"
#include "cli/output/ExitCode.h"
#include "cli/run/Context.h"

#include <memory>
#include <span>

namespace brevint::cli {

/// One command of the program.
class Command {
public:
    virtual ~Command() = default;

    /// Declares the command's own options; their values are kept in this object.
    virtual void AddOptions(OptionList& options) = 0;

    /// Does the work and tells its outcome. Throws a Failure when it comes to nothing.
    virtual ExitCode Run(Context& context) = 0;
};

struct CommandRow {
    const char* name;
    const char* summary;
    const char* notes;    ///< What else there is to know, in lines of up to 80 characters; or "".
    const char* examples; ///< One command line after the other.
    std::unique_ptr<Command> (*make)();
};

/// All commands, in the order in which the help shows them.
std::span<const CommandRow> AllCommands();

} // namespace brevint::cli
