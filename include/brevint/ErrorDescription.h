#pragma once

#include "brevint/Export.h"

/// What is known of an error code. The texts are English, ASCII, and constant: they belong to the
/// library and live as long as it is loaded.
struct ErrorDescription {
    double code;         ///< Of brevint/ErrorCodes.h.
    const char* name;    ///< Of the constant there, like "DownloadItemNotFound".
    const char* calls;   ///< Which calls can end in it, like "check-in, check-out".
    const char* meaning; ///< What has happened: part of a sentence, like "there is no such item".
    const char* hint; ///< What the user can do about it: a sentence; empty when there is nothing.
};

/// Describes an error code, so that every application shows the same words for it. Null when no
/// response has such a code. Any thread.
BREVINT_API const ErrorDescription* DescribeError(double code) noexcept;
