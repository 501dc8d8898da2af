#pragma once

#include <string>

namespace brevint::cli {

/// The manual page brevint(1), in the man macros of roff.
std::string ManPage();

} // namespace brevint::cli
