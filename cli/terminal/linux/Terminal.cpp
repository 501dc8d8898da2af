#include "cli/terminal/Terminal.h"

#include "support/linux/Descriptor.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <iterator>
#include <system_error>

#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/signalfd.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

namespace brevint::cli::Terminal {

namespace {

int Number(Stream stream) {
    switch (stream) {
    case Stream::Input: return STDIN_FILENO;
    case Stream::Output: return STDOUT_FILENO;
    case Stream::Error: break;
    }
    return STDERR_FILENO;
}

/// Turns the echo of standard input's terminal off while it lives.
class EchoOff {
public:
    EchoOff() {
        tcgetattr(STDIN_FILENO, &m_before);
        termios hidden = m_before;
        hidden.c_lflag &= ~static_cast<tcflag_t>(ECHO);
        tcsetattr(STDIN_FILENO, TCSAFLUSH, &hidden);
    }
    EchoOff(const EchoOff&) = delete;
    EchoOff& operator=(const EchoOff&) = delete;
    ~EchoOff() { tcsetattr(STDIN_FILENO, TCSAFLUSH, &m_before); }

private:
    termios m_before{};
};

/// While it lives, signals that end, stop or continue the program are read from a descriptor
/// instead of doing so. Those that are ignored stay so.
class HeldSignals {
public:
    HeldSignals() {
        sigset_t held;
        sigemptyset(&held);
        for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGTSTP, SIGCONT}) {
            struct sigaction action = {};
            sigaction(signal, nullptr, &action);
            if (action.sa_handler != SIG_IGN) {
                sigaddset(&held, signal);
            }
        }
        pthread_sigmask(SIG_BLOCK, &held, &m_before);
        m_descriptor = Descriptor(signalfd(-1, &held, SFD_CLOEXEC));
    }
    HeldSignals(const HeldSignals&) = delete;
    HeldSignals& operator=(const HeldSignals&) = delete;
    ~HeldSignals() { pthread_sigmask(SIG_SETMASK, &m_before, nullptr); }

    int Get() const { return m_descriptor.Get(); }

    /// The next signal.
    int Take() const {
        signalfd_siginfo info = {};
        return read(Get(), &info, sizeof info) == sizeof info ? static_cast<int>(info.ssi_signo)
                                                              : SIGINT;
    }

    /// Lets a signal do what it does, and returns if the program goes on after that.
    static void LetThrough(int signal) {
        const sigset_t one = SetOf(signal);
        raise(signal);
        pthread_sigmask(SIG_UNBLOCK, &one, nullptr);
        pthread_sigmask(SIG_BLOCK, &one, nullptr);
        // What ended the stop has done its work.
        const sigset_t continued = SetOf(SIGCONT);
        const timespec noTime = {};
        sigtimedwait(&continued, nullptr, &noTime);
    }

private:
    static sigset_t SetOf(int signal) {
        sigset_t set;
        sigemptyset(&set);
        sigaddset(&set, signal);
        return set;
    }

    sigset_t m_before{};
    Descriptor m_descriptor;
};

} // namespace

void Prepare() {
    // Opened for reading only: what is written to such a stream must not seem to have arrived.
    int lowestFree = open("/dev/null", O_RDONLY);
    while (lowestFree >= STDIN_FILENO && lowestFree <= STDERR_FILENO) {
        lowestFree = open("/dev/null", O_RDONLY);
    }
    close(lowestFree);
}

std::vector<std::string> Arguments(int argc, char** argv) {
    return argc > 0 ? std::vector<std::string>(argv + 1, argv + argc) : std::vector<std::string>();
}

bool IsTerminal(Stream stream) {
    return isatty(Number(stream)) == 1;
}

bool IsCapable(Stream stream) {
    const char* const kind = std::getenv("TERM");
    return IsTerminal(stream) && kind && std::string_view(kind) != "dumb";
}

bool HasColours(Stream stream) {
    const char* const forbidden = std::getenv("NO_COLOR");
    return IsCapable(stream) && (!forbidden || *forbidden == '\0');
}

std::size_t Width(Stream stream) {
    winsize size = {};
    const bool known = ioctl(Number(stream), TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return known ? size.ws_col : 80;
}

bool IsOutput(const std::filesystem::path& path) {
    struct stat file {};
    struct stat output {};
    return stat(path.c_str(), &file) == 0 && fstat(STDOUT_FILENO, &output) == 0 &&
           file.st_dev == output.st_dev && file.st_ino == output.st_ino;
}

void Write(Stream stream, std::string_view text) {
    while (!text.empty()) {
        const ssize_t written = write(Number(stream), text.data(), text.size());
        if (written >= 0) {
            text.remove_prefix(static_cast<std::size_t>(written));
        } else if (errno != EINTR) {
            throw std::system_error(errno, std::generic_category());
        }
    }
}

std::optional<std::string> ReadHiddenLine(const std::string& prompt) {
    const HeldSignals signals;
    std::optional<EchoOff> echoOff(std::in_place);
    Write(Stream::Error, prompt);
    std::string line;
    for (;;) {
        pollfd sources[] = {{STDIN_FILENO, POLLIN, 0}, {signals.Get(), POLLIN, 0}};
        poll(sources, std::size(sources), -1);
        if (sources[1].revents != 0) {
            const int signal = signals.Take();
            if (signal == SIGINT || signal == SIGTERM || signal == SIGHUP) {
                return std::nullopt;
            }
            // Stopped, ended by Ctrl-\, or continued after a stop that nobody can hold: whoever has
            // the terminal meanwhile may have changed it.
            echoOff.reset();
            if (signal != SIGCONT) {
                HeldSignals::LetThrough(signal);
            }
            echoOff.emplace();
            Write(Stream::Error, prompt);
            line.clear();
        } else if (sources[0].revents != 0) {
            char c = 0;
            if (read(STDIN_FILENO, &c, 1) != 1) {
                return std::nullopt;
            }
            if (c == '\n') {
                return line;
            }
            line += c;
        }
    }
}

} // namespace brevint::cli::Terminal
