#include "cli/run/Password.h"

#include "cli/output/Failure.h"
#include "cli/terminal/SafeText.h"
#include "cli/terminal/Terminal.h"

#include <iostream>
#include <optional>

namespace brevint::cli {

std::string ReadPassword(const std::string& user, const StopToken& stop) {
    if (Terminal::IsTerminal(Terminal::Stream::Input)) {
        const std::optional<std::string> password = Terminal::ReadLine(
            "Password of " + Neutralise(user) + ": ", Terminal::Echo::Hidden, stop);
        Terminal::Write(Terminal::Stream::Error, "\n");
        if (!password) {
            throw Failure(ExitCode::Interrupted, "No password was given.");
        }
        return *password;
    }
    std::string password;
    if (!std::getline(std::cin, password)) {
        throw Failure(ExitCode::Usage, "There is no password on standard input.",
                      "Give the password as its first line.");
    }
    if (password.ends_with('\r')) {
        password.pop_back();
    }
    return password;
}

} // namespace brevint::cli
