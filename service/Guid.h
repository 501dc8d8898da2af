#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace brevint::service {

/// `text` in lower case when it has the form xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx.
std::optional<std::string> ParseGuid(std::string_view text);

/// A new random identifier, in lower case.
std::string NewGuid();

} // namespace brevint::service
