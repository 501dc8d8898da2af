#pragma once

#include <brevint/client/StopToken.h>

#include <chrono>
#include <optional>
#include <string_view>
#include <system_error>

#include <windows.h>

namespace brevint::cli {

/// Writes all of it, however long whoever reads takes, until the token is stopped: from then on it
/// goes on only with a `patience`, and fails with std::errc::operation_canceled when nobody has
/// read for that long.
std::error_code WriteAll(HANDLE target, std::string_view bytes, const StopToken& stop,
                         std::optional<std::chrono::milliseconds> patience);

} // namespace brevint::cli
