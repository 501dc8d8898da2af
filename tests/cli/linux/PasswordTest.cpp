// The password is typed at a terminal, in a shell that stops and continues its jobs.

#include "tests/cli/ClientFixture.h"
#include "tests/support/RefusedPort.h"

#include <csignal>

#include <poll.h>
#include <pty.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

namespace brevint::test {
namespace {

/// The client at a terminal of its own, asked to sign in where nobody answers. Its parent is as a
/// shell is: whenever the client stops, it waits for a byte and lets it go on.
class TerminalRun {
public:
    explicit TerminalRun(const std::string& url) {
        std::string program =
            std::filesystem::read_symlink("/proc/self/exe").parent_path() / "brevint";
        const char* const arguments[] = {program.c_str(), "sign-in",   "--user", "ada",
                                         "--url",         url.c_str(), nullptr};
        if (pipe(m_stopped) != 0 || pipe(m_goOn) != 0) {
            throw std::system_error(errno, std::generic_category());
        }
        m_shell = forkpty(&m_terminal, nullptr, nullptr, nullptr);
        if (m_shell == 0) {
            RunShell(const_cast<char**>(arguments));
        }
        close(m_stopped[1]);
    }
    ~TerminalRun() {
        close(m_terminal); // which ends what is left of the session
        waitpid(m_shell, nullptr, 0);
        for (const int descriptor : {m_stopped[0], m_goOn[0], m_goOn[1]}) {
            close(descriptor);
        }
    }

    bool IsEchoOn() const {
        termios modes{};
        tcgetattr(m_terminal, &modes);
        return (modes.c_lflag & ECHO) != 0;
    }

    /// Waits for the prompt that comes after what was read so far.
    bool AwaitPrompt() {
        const std::size_t start = m_output.size();
        while (m_output.find("ada: ", start) == std::string::npos) {
            pollfd readable = {m_terminal, POLLIN, 0};
            char buffer[4096];
            if (poll(&readable, 1, 60'000) != 1) {
                return false;
            }
            const ssize_t count = read(m_terminal, buffer, sizeof buffer);
            if (count <= 0) {
                return false;
            }
            m_output.append(buffer, static_cast<std::size_t>(count));
        }
        return true;
    }

    void Type(std::string_view text) const {
        EXPECT_EQ(static_cast<ssize_t>(text.size()), write(m_terminal, text.data(), text.size()));
    }

    /// The status, as waitpid tells it, with which the client stops or ends; -1 after a minute.
    int AwaitChange() const {
        pollfd readable = {m_stopped[0], POLLIN, 0};
        int status = -1;
        return poll(&readable, 1, 60'000) == 1 &&
                       read(m_stopped[0], &status, sizeof status) == sizeof status
                   ? status
                   : -1;
    }

    void GoOn() const { EXPECT_EQ(1, write(m_goOn[1], "", 1)); }

    const std::string& Output() const { return m_output; }

private:
    [[noreturn]] void RunShell(char** arguments) const {
        std::signal(SIGTTOU, SIG_IGN);
        const rlimit none{};
        setrlimit(RLIMIT_CORE, &none);
        const pid_t client = fork();
        if (client == 0) {
            setpgid(0, 0);
            tcsetpgrp(STDIN_FILENO, getpid());
            // Ctrl-C and its like are ignored in what a shell runs in the background.
            for (const int signal : {SIGTTOU, SIGINT, SIGQUIT}) {
                std::signal(signal, SIG_DFL);
            }
            execv(arguments[0], arguments);
            _exit(99);
        }
        int status = 0;
        while (waitpid(client, &status, WUNTRACED) == client) {
            char byte = 0;
            if (write(m_stopped[1], &status, sizeof status) != sizeof status ||
                !WIFSTOPPED(status) || read(m_goOn[0], &byte, 1) != 1) {
                break;
            }
            tcsetpgrp(STDIN_FILENO, client);
            kill(-client, SIGCONT);
        }
        _exit(0);
    }

    int m_terminal = -1;
    int m_stopped[2] = {};
    int m_goOn[2] = {};
    pid_t m_shell = -1;
    std::string m_output;
};

TEST_F(ClientTest, AsksForThePasswordWithoutEchoWhateverSignalComes) {
    const RefusedPort port;
    const std::string url = "http://127.0.0.1:" + std::to_string(port.Port());
    const struct {
        const char* what;
        std::string typed;
        int status; ///< As waitpid tells it.
    } cases[] = {
        {"the password", "secret\n", W_EXITCODE(4, 0)},
        {"Ctrl-C", "sec\x03", W_EXITCODE(130, 0)},
        {"Ctrl-D", "\x04", W_EXITCODE(130, 0)},
        {"Ctrl-\\", "sec\x1c", SIGQUIT},
    };
    for (const bool stopped : {false, true}) {
        for (const auto& test : cases) {
            SCOPED_TRACE(test.what);
            TerminalRun run(url);
            ASSERT_TRUE(run.AwaitPrompt());
            EXPECT_FALSE(run.IsEchoOn());
            if (stopped) {
                run.Type("sec\x1a");
                ASSERT_EQ(W_STOPCODE(SIGTSTP), run.AwaitChange());
                EXPECT_TRUE(run.IsEchoOn());
                run.GoOn();
                ASSERT_TRUE(run.AwaitPrompt());
                EXPECT_FALSE(run.IsEchoOn());
            }
            run.Type(test.typed);
            EXPECT_EQ(test.status, run.AwaitChange());
            EXPECT_TRUE(run.IsEchoOn());
            EXPECT_EQ(std::string::npos, run.Output().find("sec"));
        }
    }
}

} // namespace
} // namespace brevint::test
