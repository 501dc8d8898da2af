#include "cli/terminal/Interrupt.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <system_error>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace brevint::cli {

namespace {

constexpr std::array kSignals = {SIGINT, SIGTERM, SIGHUP};

/// A byte in this pipe stands for a request; it stays there, so that every wait sees it.
std::array<int, 2> requests = {-1, -1};
int nesting = 0;
std::array<struct sigaction, kSignals.size()> previous;
struct sigaction previousPipe;

void NoteRequest(int) {
    const int error = errno;
    // When the pipe is full there are requests enough in it.
    [[maybe_unused]] const ssize_t written = write(requests[1], "", 1);
    errno = error;
}

} // namespace

Interrupt::Interrupt() {
    if (nesting++ > 0) {
        return;
    }
    // Kept for the life of the process: the handler may be running on another thread at any time.
    if (requests[0] < 0 && pipe2(requests.data(), O_CLOEXEC | O_NONBLOCK) != 0) {
        throw std::system_error(errno, std::generic_category());
    }
    struct sigaction action = {};
    action.sa_handler = NoteRequest;
    for (std::size_t i = 0; i < kSignals.size(); ++i) {
        sigaction(kSignals[i], &action, &previous[i]);
        // nohup and its like keep their word.
        if (previous[i].sa_handler == SIG_IGN) {
            sigaction(kSignals[i], &previous[i], nullptr);
        }
    }
    action.sa_handler = SIG_IGN;
    sigaction(SIGPIPE, &action, &previousPipe);
}

Interrupt::~Interrupt() {
    if (--nesting > 0) {
        return;
    }
    for (std::size_t i = 0; i < kSignals.size(); ++i) {
        sigaction(kSignals[i], &previous[i], nullptr);
    }
    sigaction(SIGPIPE, &previousPipe, nullptr);
}

bool Interrupt::Wait(std::chrono::milliseconds time) {
    pollfd request = {requests[0], POLLIN, 0};
    const int ready = poll(&request, 1, static_cast<int>(time.count()));
    // A signal that breaks off the wait is one of ours, or the next wait will go on.
    return ready > 0 || (ready < 0 && poll(&request, 1, 0) > 0);
}

} // namespace brevint::cli
