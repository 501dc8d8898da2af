#pragma once

#include "brevint/RootFolder.h"
#include "support/Utf8.h"

#include <cstdint>
#include <string>
#include <vector>

namespace brevint::cli {

/// What a command line says. Which command takes which of these stands in commands/Commands.cpp.
struct Options {
    // Of all commands.
    std::string url; ///< Empty: that of the session.
    std::string root = Utf8::ToNarrow(RootFolder::Projects);
    std::uint32_t timeoutSeconds = 3600;
    bool json = false;
    bool insecureHttp = false;

    // Of some.
    std::vector<std::string> items;
    std::vector<std::string> files;
    std::string item;
    std::string file;
    std::string folder;
    std::string name;
    std::string type;
    std::string job;
    std::string user;
    std::string output; ///< Empty: called as on the service.
    std::string directory = ".";
    std::string jobOf = "put";
    bool allFields = false;
    bool wait = false;
    bool noWait = false;
};

} // namespace brevint::cli
