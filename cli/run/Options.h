#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace brevint::cli {

/// What a command line says. Which command takes which of these stands in commands/Commands.cpp.
struct Options {
    // Of all commands.
    std::string url;                ///< Empty: that of the session.
    std::vector<std::string> roots; ///< "NAME=ID"
    std::uint32_t timeoutSeconds = 300;
    bool json = false;
    bool events = false;
    bool quiet = false;
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
    std::string sort = "name";
    std::uint32_t concurrent = 4;
    bool allFields = false;
    bool recursive = false;
    bool reverse = false;
    bool update = false;
    bool overwrite = false;
    bool keepTimes = false;
    bool planOnly = false;
    bool force = false;
    bool wait = false;
    bool noWait = false;
};

} // namespace brevint::cli
