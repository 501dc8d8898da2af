#include "cli/terminal/linux/StoppableWrite.h"

#include "support/linux/Descriptor.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstdint>

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/stat.h>
#include <unistd.h>

namespace brevint::cli {

namespace {

/// As much as can be written without a wait, where writing may be waited for at all.
std::size_t MostAtOnce(int descriptor) {
    struct stat found {};
    const bool neverWaits = fstat(descriptor, &found) == 0 && S_ISREG(found.st_mode);
    return neverWaits ? std::size_t{1} << 20 : PIPE_BUF;
}

} // namespace

std::error_code WriteAll(int descriptor, std::string_view bytes, const StopToken& stop,
                         std::optional<std::chrono::milliseconds> patience) {
    const Descriptor stopped(eventfd(0, EFD_CLOEXEC));
    const auto wake = [&stopped] {
        const std::uint64_t one = 1;
        [[maybe_unused]] const ssize_t written = write(stopped.Get(), &one, sizeof one);
    };
    const StopCallback<decltype(wake)> onStop(stop, wake);
    const std::size_t most = MostAtOnce(descriptor);
    while (!bytes.empty()) {
        const bool isStopped = stop.stop_requested();
        if (isStopped && !patience) {
            return std::make_error_code(std::errc::operation_canceled);
        }
        std::array<pollfd, 2> sources = {
            {{descriptor, POLLOUT, 0}, {isStopped ? -1 : stopped.Get(), POLLIN, 0}}};
        const int ready = poll(sources.data(), sources.size(),
                               isStopped ? static_cast<int>(patience->count()) : -1);
        if (ready == 0) {
            return std::make_error_code(std::errc::operation_canceled);
        }
        if (ready < 0 || sources[0].revents == 0) {
            continue; // a signal came, or the stop
        }
        const ssize_t written = write(descriptor, bytes.data(), std::min(bytes.size(), most));
        if (written >= 0) {
            bytes.remove_prefix(static_cast<std::size_t>(written));
        } else if (errno != EINTR && errno != EAGAIN) {
            return {errno, std::generic_category()};
        }
    }
    return {};
}

} // namespace brevint::cli
