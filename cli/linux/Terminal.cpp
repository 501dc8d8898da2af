#include "cli/Terminal.h"

#include "cli/Interrupt.h"

#include <cerrno>
#include <cstdlib>
#include <system_error>

#include <fcntl.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

namespace brevint::cli::Terminal {

namespace {

int Descriptor(Stream stream) {
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
        tcgetattr(STDIN_FILENO, &before_);
        termios hidden = before_;
        hidden.c_lflag &= ~static_cast<tcflag_t>(ECHO);
        tcsetattr(STDIN_FILENO, TCSAFLUSH, &hidden);
    }
    EchoOff(const EchoOff&) = delete;
    EchoOff& operator=(const EchoOff&) = delete;
    ~EchoOff() { tcsetattr(STDIN_FILENO, TCSAFLUSH, &before_); }

private:
    termios before_{};
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
    return isatty(Descriptor(stream)) == 1;
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
    const bool known = ioctl(Descriptor(stream), TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return known ? size.ws_col : 80;
}

void Write(Stream stream, std::string_view text) {
    while (!text.empty()) {
        const ssize_t written = write(Descriptor(stream), text.data(), text.size());
        if (written >= 0) {
            text.remove_prefix(static_cast<std::size_t>(written));
        } else if (errno != EINTR) {
            throw std::system_error(errno, std::generic_category());
        }
    }
}

std::optional<std::string> ReadHiddenLine() {
    // Ctrl-C breaks off the read below and leaves the echo to be restored.
    Interrupt interrupt;
    const EchoOff echoOff;
    std::string line;
    char c = 0;
    while (read(STDIN_FILENO, &c, 1) == 1) {
        if (c == '\n') {
            return line;
        }
        line += c;
    }
    return std::nullopt;
}

} // namespace brevint::cli::Terminal
