#pragma once

#include <string>
#include <string_view>

namespace brevint::cli {

/// `text` (UTF-8) as it may be shown on a terminal: every character that could steer the terminal,
/// turn the direction of writing or not be seen becomes U+FFFD, line ends and tabs too.
std::string Neutralise(std::string_view text);

/// A JSON document with those characters, as far as JSON lets them stand, as \u escapes.
std::string NeutraliseJson(std::string_view document);

} // namespace brevint::cli
