#include "cli/run/Password.h"

#include "cli/output/Failure.h"
#include "cli/terminal/SafeText.h"
#include "cli/terminal/Terminal.h"

#include <optional>
#include <utility>

namespace brevint::cli {

std::string ReadPassword(const std::string& user, const StopToken& stop) {
    const bool isAsked = Terminal::IsTerminal(Terminal::Stream::Input);
    std::optional<std::string> password =
        Terminal::ReadLine(isAsked ? "Password of " + Neutralise(user) + ": " : "",
                           isAsked ? Terminal::Echo::Hidden : Terminal::Echo::Shown, stop);
    if (isAsked) {
        Terminal::Tell("\n", stop);
    }
    if (!password && (isAsked || stop.stop_requested())) {
        throw Failure(ExitCode::Interrupted, "No password was given.");
    }
    if (!password) {
        throw Failure(ExitCode::Usage, "There is no password on standard input.",
                      "Give the password as its first line.");
    }
    if (password->ends_with('\r')) {
        password->pop_back();
    }
    return *std::move(password);
}

} // namespace brevint::cli
