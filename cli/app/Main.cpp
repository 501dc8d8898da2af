#include "cli/app/Application.h"
#include "cli/service/Wait.h"
#include "cli/terminal/Terminal.h"

#include <cstdlib>
#include <exception>
#include <iostream>

int main(int argc, char** argv) {
    using namespace brevint::cli;
    try {
        Terminal::Prepare();
        const ExitCode exitCode = RunApplication(Terminal::Arguments(argc, argv));
        if (IsCallLeftBehind()) {
            std::_Exit(static_cast<int>(exitCode));
        }
        return static_cast<int>(exitCode);
    } catch (const std::exception& error) {
        std::cerr << "brevint: " << error.what() << '\n';
        return static_cast<int>(ExitCode::LocalFile);
    }
}
