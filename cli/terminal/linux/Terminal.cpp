#include "cli/terminal/Terminal.h"

#include "cli/terminal/linux/StoppableWrite.h"
#include "support/linux/Descriptor.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <iterator>
#include <system_error>

#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
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
        TurnOff(TCSAFLUSH);
    }
    EchoOff(const EchoOff&) = delete;
    EchoOff& operator=(const EchoOff&) = delete;
    ~EchoOff() { tcsetattr(STDIN_FILENO, TCSAFLUSH, &m_before); }

    /// Once more, after somebody else has had the terminal. What has been typed since stays.
    void Renew() const { TurnOff(TCSADRAIN); }

private:
    void TurnOff(int when) const {
        termios hidden = m_before;
        hidden.c_lflag &= ~static_cast<tcflag_t>(ECHO);
        tcsetattr(STDIN_FILENO, when, &hidden);
    }

    termios m_before{};
};

// What wakes a prompt: a signal's number, or 0 for a stopped token. -1 while nobody asks. A signal
// handler, which may run on any thread, finds it here.
std::atomic<int> wakingsIn = -1;

void WakePrompt(int reason) {
    const int error = errno;
    const auto byte = static_cast<char>(reason);
    // When the pipe is full there are reasons enough in it.
    [[maybe_unused]] const ssize_t written = write(wakingsIn, &byte, 1);
    errno = error;
}

/// While it lives, signals that stop, continue or quit the program are read from a pipe instead of
/// doing so. Those that are ignored stay so.
class HeldSignals {
public:
    HeldSignals() {
        std::array<int, 2> ends{};
        if (pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0) {
            throw std::system_error(errno, std::generic_category());
        }
        m_out = Descriptor(ends[0]);
        m_in = Descriptor(ends[1]);
        wakingsIn = ends[1];
        struct sigaction action = {};
        action.sa_handler = WakePrompt;
        action.sa_flags = SA_RESTART;
        for (std::size_t i = 0; i < kHeld.size(); ++i) {
            sigaction(kHeld[i], nullptr, &m_before[i]);
            if (m_before[i].sa_handler != SIG_IGN) {
                sigaction(kHeld[i], &action, nullptr);
            }
        }
    }
    HeldSignals(const HeldSignals&) = delete;
    HeldSignals& operator=(const HeldSignals&) = delete;
    ~HeldSignals() {
        for (std::size_t i = 0; i < kHeld.size(); ++i) {
            sigaction(kHeld[i], &m_before[i], nullptr);
        }
        wakingsIn = -1;
    }

    int Get() const { return m_out.Get(); }

    /// The next reason to wake; -1 when there is none.
    int Take() const {
        char reason = 0;
        return read(Get(), &reason, 1) == 1 ? reason : -1;
    }

    /// Lets a signal do what it does, and returns if the program goes on after that.
    void LetThrough(int signal) const {
        struct sigaction held = {};
        struct sigaction usual = {};
        usual.sa_handler = SIG_DFL;
        sigaction(signal, &usual, &held);
        raise(signal);
        sigaction(signal, &held, nullptr);
        // What ended the stop has done its work.
        Take();
    }

private:
    static constexpr std::array kHeld = {SIGQUIT, SIGTSTP, SIGCONT};

    Descriptor m_out;
    Descriptor m_in;
    std::array<struct sigaction, kHeld.size()> m_before{};
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

void Write(Stream stream, std::string_view text, const StopToken& stop) {
    if (const std::error_code failed = WriteAll(Number(stream), text, stop, PatienceWith(stream))) {
        throw std::system_error(failed);
    }
}

std::optional<std::string> ReadLine(const std::string& prompt, Echo echo, const StopToken& stop) {
    const HeldSignals signals;
    const auto wake = [] {
        WakePrompt(0);
    };
    const StopCallback<decltype(wake)> onStop(stop, wake);
    std::optional<EchoOff> echoOff;
    const auto ask = [&] {
        if (echo == Echo::Hidden) {
            echoOff.emplace();
        }
        Tell(prompt, stop);
    };
    ask();
    std::string line;
    for (;;) {
        pollfd sources[] = {{STDIN_FILENO, POLLIN, 0}, {signals.Get(), POLLIN, 0}};
        poll(sources, std::size(sources), -1);
        const int signal = signals.Take();
        if (signal == 0) {
            return std::nullopt;
        }
        if (signal == SIGCONT) {
            // After a stop that nobody can hold, or late after another one: an answer may have been
            // typed meanwhile.
            if (echoOff) {
                echoOff->Renew();
            }
            Tell(prompt, stop);
        } else if (signal > 0) {
            // Stopped, or ended by Ctrl-\: whoever has the terminal meanwhile may change it.
            echoOff.reset();
            signals.LetThrough(signal);
            ask();
            line.clear();
        } else if (sources[0].revents != 0) {
            char c = 0;
            const ssize_t count = read(STDIN_FILENO, &c, 1);
            if (count != 1) {
                const bool isLast = count == 0 && !line.empty() && !IsTerminal(Stream::Input);
                return isLast ? std::optional(line) : std::nullopt;
            }
            if (c == '\n') {
                return line;
            }
            line += c;
        }
    }
}

} // namespace brevint::cli::Terminal
