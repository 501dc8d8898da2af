#include "cli/app/Application.h"
#include "cli/terminal/Terminal.h"

#include <exception>
#include <iostream>

int main(int argc, char** argv) {
    using namespace brevint::cli;
    try {
        Terminal::Prepare();
        return static_cast<int>(RunApplication(Terminal::Arguments(argc, argv)));
    } catch (const std::exception& error) {
        std::cerr << "brevint: " << error.what() << '\n';
        return static_cast<int>(ExitCode::LocalFile);
    }
}
