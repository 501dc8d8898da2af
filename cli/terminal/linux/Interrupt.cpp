#include "cli/terminal/Interrupt.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <system_error>
#include <thread>

#include <fcntl.h>
#include <unistd.h>

namespace brevint::cli {

namespace {

constexpr std::array kSignals = {SIGINT, SIGTERM, SIGHUP};

constexpr char kRequest = 'r';
constexpr char kEnd = 'e';

// What comes out of this pipe wakes the thread that watches. Kept for the life of the process: the
// handler may be running on another thread at any time.
std::array<int, 2> wakings = {-1, -1};

void Wake(char reason) {
    const int error = errno;
    // When the pipe is full there are requests enough in it.
    [[maybe_unused]] const ssize_t written = write(wakings[1], &reason, 1);
    errno = error;
}

void NoteRequest(int) {
    Wake(kRequest);
}

} // namespace

/// The signal handlers, and the thread that may do what a handler must not.
struct Interrupt::Watch {
    explicit Watch(const StopSource& source) {
        if (wakings[0] < 0 && pipe2(wakings.data(), O_CLOEXEC) != 0) {
            throw std::system_error(errno, std::generic_category());
        }
        thread = std::thread([source]() mutable {
            char reason = kRequest;
            while (read(wakings[0], &reason, 1) == 1 && reason != kEnd) {
                source.request_stop();
            }
        });
        struct sigaction action = {};
        action.sa_handler = NoteRequest;
        action.sa_flags = SA_RESTART;
        for (std::size_t i = 0; i < kSignals.size(); ++i) {
            sigaction(kSignals[i], &action, &previous[i]);
            // nohup and its like keep their word.
            if (previous[i].sa_handler == SIG_IGN) {
                sigaction(kSignals[i], &previous[i], nullptr);
            }
        }
    }
    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;
    ~Watch() {
        for (std::size_t i = 0; i < kSignals.size(); ++i) {
            sigaction(kSignals[i], &previous[i], nullptr);
        }
        Wake(kEnd);
        thread.join();
    }

    std::thread thread;
    std::array<struct sigaction, kSignals.size()> previous{};
};

Interrupt::Interrupt() : m_watch(std::make_unique<Watch>(m_source)) {}

Interrupt::~Interrupt() = default;

} // namespace brevint::cli
