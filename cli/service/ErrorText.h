#pragma once

#include "cli/output/ExitCode.h"

namespace brevint::cli {

/// What the program knows about one of the library's error codes.
struct ErrorText {
    double code;
    const char* name; ///< As in brevint/ErrorCodes.h.
    ExitCode exitCode;
    const char* hint; ///< What to try.
};

/// The row of a code; that of ErrorCode::MessageNotRecognised for a code that has none.
const ErrorText& FindErrorText(double code);

} // namespace brevint::cli
