#include "cli/terminal/Sink.h"

#include "cli/terminal/linux/StoppableWrite.h"
#include "support/linux/Descriptor.h"

#include <cerrno>
#include <csignal>
#include <thread>

#include <fcntl.h>
#include <unistd.h>

namespace brevint::cli {

/// While it lives, a pipe that nobody reads any more is an error and does not end the program.
struct Sink::Target {
    Target() : beforeIgnored(std::signal(SIGPIPE, SIG_IGN)) {}
    Target(const Target&) = delete;
    Target& operator=(const Target&) = delete;
    ~Target() { std::signal(SIGPIPE, beforeIgnored); }

    void (*beforeIgnored)(int);
    Descriptor opened; ///< None: it is standard output.

    int Number() const { return opened ? opened.Get() : STDOUT_FILENO; }
};

Sink::Sink() : m_target(std::make_unique<Target>()) {}

Sink::Sink(const std::filesystem::path& path, const StopToken& stop) : Sink() {
    std::error_code failed;
    std::thread opener([&] {
        m_target->opened = Descriptor(open(path.c_str(), O_WRONLY | O_NOCTTY | O_CLOEXEC));
        failed =
            m_target->opened ? std::error_code() : std::error_code(errno, std::generic_category());
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
    return WriteAll(m_target->Number(), bytes, stop, std::nullopt);
}

} // namespace brevint::cli
