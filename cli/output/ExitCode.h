#pragma once

#include <array>

namespace brevint::cli {

/// What the program tells its caller; part of its interface.
enum class ExitCode {
    Success = 0,
    Refused = 1,
    Usage = 2,
    NotAuthorised = 3,
    NoConnection = 4,
    LocalFile = 5,
    TimedOut = 6,
    Interrupted = 130, // what shells report for a program that Ctrl-C has ended
};

struct ExitCodeRow {
    ExitCode code;
    const char* meaning;
};

inline constexpr std::array<ExitCodeRow, 8> kExitCodes = {{
    {ExitCode::Success, "done"},
    {ExitCode::Refused, "the service refused, or its answer was not understood"},
    {ExitCode::Usage, "the command line is wrong"},
    {ExitCode::NotAuthorised, "not signed in, or not authorised"},
    {ExitCode::NoConnection, "no connection to the service, or it broke"},
    {ExitCode::LocalFile, "a local file or folder cannot be read or written"},
    {ExitCode::TimedOut, "not finished within --timeout"},
    {ExitCode::Interrupted, "interrupted"},
}};

} // namespace brevint::cli
