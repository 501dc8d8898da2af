#pragma once

#include "cli/output/ExitCode.h"

#include <brevint/client/Error.h>

#include <exception>
#include <string>
#include <system_error>
#include <utility>

namespace brevint::cli {

/// Why a command, or its work on one item, came to nothing. All texts are UTF-8 sentences.
struct Failure : std::exception {
    Failure(ExitCode exit, std::string text, std::string advice = {})
        : exitCode(exit), summary(std::move(text)), hint(std::move(advice)) {}

    const char* what() const noexcept override { return summary.c_str(); }

    ExitCode exitCode;
    std::string summary;             ///< What failed.
    std::string hint;                ///< What to try; may be empty.
    std::string serverWords;         ///< The service's or portal's own message; may be empty.
    const char* speaker = "service"; ///< Whose message that is.
    int code = 0;                    ///< The library's error code; 0 when no call was made.
    std::string codeName;            ///< Its name in brevint/ErrorCodes.h.
    bool concernsAll = false;        ///< Whatever is asked for next would fail likewise.
};

/// What the library says of a call or transfer, as a Failure that begins with `summary`: "The
/// folder cannot be listed."
Failure FailureOf(const std::string& summary, const Error& error);

/// What `work` returns. A failure of the library in it is thrown as FailureOf.
template <class Function>
auto Attempt(const std::string& summary, Function work) {
    try {
        return work();
    } catch (const Exception& failed) {
        throw FailureOf(summary, failed.GetError());
    }
}

/// The exception that is being handled, as a Failure. One that no command expects is thrown on.
Failure CurrentFailure();

/// Trouble with a local file: `summary`, without its full stop, is followed by the system's reason.
inline Failure LocalFailure(const std::string& summary, const std::error_code& reason) {
    return Failure(ExitCode::LocalFile, summary + ": " + reason.message() + ".");
}

} // namespace brevint::cli
