#pragma once

#include <brevint/client/StopToken.h>

#include <chrono>
#include <string_view>
#include <system_error>

#include <windows.h>

namespace brevint::cli {

/// Writes all of it, however long whoever reads takes, until the token is stopped: when nobody has
/// read all of it for as long as `patience` after that, it fails with
/// std::errc::operation_canceled.
std::error_code WriteAll(HANDLE target, std::string_view bytes, const StopToken& stop,
                         std::chrono::milliseconds patience);

} // namespace brevint::cli
