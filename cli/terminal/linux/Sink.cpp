#include "cli/terminal/Sink.h"

#include "support/linux/Descriptor.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdint>
#include <thread>

#include <fcntl.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/stat.h>
#include <unistd.h>

namespace brevint::cli {

namespace {

std::error_code LastError() {
    return {errno, std::generic_category()};
}

} // namespace

/// While it lives, a pipe that nobody reads any more is an error and does not end the program.
struct Sink::Target {
    Target() : beforeIgnored(std::signal(SIGPIPE, SIG_IGN)) {}
    Target(const Target&) = delete;
    Target& operator=(const Target&) = delete;
    ~Target() { std::signal(SIGPIPE, beforeIgnored); }

    void (*beforeIgnored)(int);
    Descriptor opened; ///< None: it is standard output.

    int Number() const { return opened ? opened.Get() : STDOUT_FILENO; }

    /// As much as can be written without a wait, where writing may be waited for at all.
    std::size_t MostAtOnce() const {
        struct stat found {};
        const bool neverWaits = fstat(Number(), &found) == 0 && S_ISREG(found.st_mode);
        return neverWaits ? std::size_t{1} << 20 : PIPE_BUF;
    }
};

Sink::Sink() : m_target(std::make_unique<Target>()) {}

Sink::Sink(const std::filesystem::path& path, const StopToken& stop) : Sink() {
    std::error_code failed;
    std::thread opener([&] {
        m_target->opened = Descriptor(open(path.c_str(), O_WRONLY | O_NOCTTY | O_CLOEXEC));
        failed = m_target->opened ? std::error_code() : LastError();
    });
    // A reader of our own ends the wait for another one. It stays until the opener has ended, which
    // may begin to wait only after the stop.
    Descriptor reader;
    {
        const auto read = [&] {
            reader = Descriptor(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
        };
        const StopCallback<decltype(read)> onStop(stop, read);
        opener.join();
    }
    if (stop.stop_requested()) {
        failed = std::make_error_code(std::errc::operation_canceled);
    }
    if (failed) {
        throw std::system_error(failed);
    }
}

Sink::~Sink() = default;

std::error_code Sink::Write(std::string_view bytes, const StopToken& stop) {
    const Descriptor stopped(eventfd(0, EFD_CLOEXEC));
    const auto wake = [&stopped] {
        const std::uint64_t one = 1;
        [[maybe_unused]] const ssize_t written = write(stopped.Get(), &one, sizeof one);
    };
    const StopCallback<decltype(wake)> onStop(stop, wake);
    const std::size_t most = m_target->MostAtOnce();
    while (!bytes.empty()) {
        std::array<pollfd, 2> sources = {
            {{m_target->Number(), POLLOUT, 0}, {stopped.Get(), POLLIN, 0}}};
        const int ready = poll(sources.data(), sources.size(), -1);
        if (stop.stop_requested()) {
            return std::make_error_code(std::errc::operation_canceled);
        }
        if (ready < 0 || sources[0].revents == 0) {
            continue; // a signal came, whose stop is still to come
        }
        const ssize_t written =
            write(m_target->Number(), bytes.data(), std::min(bytes.size(), most));
        if (written >= 0) {
            bytes.remove_prefix(static_cast<std::size_t>(written));
        } else if (errno != EINTR && errno != EAGAIN) {
            return LastError();
        }
    }
    return {};
}

} // namespace brevint::cli
