#pragma once

#include "brevint/IReadOnlyResponse.h"

#include <string>

namespace brevint::cli {

/// Throws a Failure that begins with `summary` ("The folder cannot be listed.") unless the call
/// succeeded. Null stands for a call that there was no memory for.
void RequireSuccess(const IReadOnlyResponse* response, const std::string& summary);

/// HTTP status of the reply; 0 when there was none.
unsigned long StatusOf(const IReadOnlyResponse& response);

} // namespace brevint::cli
