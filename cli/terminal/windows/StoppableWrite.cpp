#include "cli/terminal/windows/StoppableWrite.h"

#include "cli/terminal/windows/IoLimit.h"

#include <algorithm>

namespace brevint::cli {

namespace {

/// As much as is written at once: little to a pipe, so that it shows whether somebody reads.
std::size_t MostAtOnce(HANDLE target) {
    return GetFileType(target) == FILE_TYPE_PIPE ? 4096 : std::size_t{1} << 20;
}

} // namespace

std::error_code WriteAll(HANDLE target, std::string_view bytes, const StopToken& stop,
                         std::optional<std::chrono::milliseconds> patience) {
    IoLimit limit(stop, patience.value_or(std::chrono::milliseconds(0)));
    const std::size_t most = MostAtOnce(target);
    while (!bytes.empty()) {
        if (stop.stop_requested() && !patience) {
            return std::make_error_code(std::errc::operation_canceled);
        }
        DWORD written = 0;
        if (!WriteFile(target, bytes.data(), static_cast<DWORD>(std::min(bytes.size(), most)),
                       &written, nullptr)) {
            const DWORD reason = GetLastError();
            return reason == ERROR_OPERATION_ABORTED
                       ? std::make_error_code(std::errc::operation_canceled)
                       : std::error_code(static_cast<int>(reason), std::system_category());
        }
        limit.Renew();
        bytes.remove_prefix(written);
    }
    return {};
}

} // namespace brevint::cli
