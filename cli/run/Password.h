#pragma once

#include <brevint/client/StopToken.h>

#include <string>

namespace brevint::cli {

/// The user's password: asked for on a terminal, elsewhere the first line of standard input. Throws
/// a Failure when there is none.
std::string ReadPassword(const std::string& user, const StopToken& stop);

} // namespace brevint::cli
