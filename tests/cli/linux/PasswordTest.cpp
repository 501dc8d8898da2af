// The password is typed at a terminal, in a shell that stops and continues its jobs.

#include "tests/cli/ClientFixture.h"
#include "tests/support/RefusedPort.h"

#include <csignal>

#include <poll.h>
#include <pty.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

namespace brevint::test {
namespace {

/// The client at a terminal of its own, asked to sign in where nobody answers. It runs in a shell,
/// which prints "<status>" whenever the client stops or ends. After a stop the shell waits for a
/// line and then lets the client go on.
class TerminalRun {
public:
    explicit TerminalRun(const std::string& url) : m_shell(Start(Script(url), m_terminal)) {}
    TerminalRun(const TerminalRun&) = delete;
    TerminalRun& operator=(const TerminalRun&) = delete;
    ~TerminalRun() {
        close(m_terminal); // which ends what is left of the session
        waitpid(m_shell, nullptr, 0);
    }

    bool IsEchoOn() const {
        termios modes{};
        tcgetattr(m_terminal, &modes);
        return (modes.c_lflag & ECHO) != 0;
    }

    /// Waits for a text after what was waited for so far. False when none comes within a minute.
    bool Await(const std::string& text) {
        for (;;) {
            if (const auto found = m_output.find(text, m_seen); found != std::string::npos) {
                m_seen = found + text.size();
                return true;
            }
            pollfd readable = {m_terminal, POLLIN, 0};
            char buffer[4096];
            const ssize_t count =
                poll(&readable, 1, 60'000) == 1 ? read(m_terminal, buffer, sizeof buffer) : 0;
            if (count <= 0) {
                return false;
            }
            m_output.append(buffer, static_cast<std::size_t>(count));
        }
    }

    void Type(std::string_view text) const {
        EXPECT_EQ(static_cast<ssize_t>(text.size()), write(m_terminal, text.data(), text.size()));
    }

    const std::string& Output() const { return m_output; }

private:
    static std::string Script(const std::string& url) {
        const std::string program =
            std::filesystem::read_symlink("/proc/self/exe").parent_path() / "brevint";
        return "ulimit -c 0; " + program + " sign-in --user ada --url " + url +
               R"(; echo "<$?>"; read line && fg; echo "<$?>")";
    }

    static pid_t Start(const std::string& script, int& terminal) {
        const pid_t shell = forkpty(&terminal, nullptr, nullptr, nullptr);
        if (shell == 0) {
            // Ctrl-C and its like are ignored in what a shell runs in the background.
            for (const int signal : {SIGINT, SIGQUIT, SIGTSTP}) {
                std::signal(signal, SIG_DFL);
            }
            execl("/bin/sh", "sh", "-mc", script.c_str(), nullptr);
            _exit(99);
        }
        return shell;
    }

    int m_terminal = -1;
    pid_t m_shell;
    std::string m_output;
    std::size_t m_seen = 0;
};

TEST_F(ClientTest, AsksForThePasswordWithoutEchoWhateverSignalComes) {
    const RefusedPort port;
    const std::string url = "http://127.0.0.1:" + std::to_string(port.Port());
    const struct {
        const char* what;
        std::string typed;
        const char* status; ///< As shells tell it.
    } cases[] = {
        {"the password", "secret\n", "<4>"},
        {"Ctrl-C", "sec\x03", "<130>"},
        {"Ctrl-D", "\x04", "<130>"},
        {"Ctrl-D twice in a line that has begun", "sec\x04\x04", "<130>"},
        {"Ctrl-\\", "sec\x1c", "<131>"},
    };
    for (const bool stopped : {false, true}) {
        for (const auto& test : cases) {
            SCOPED_TRACE(test.what);
            TerminalRun run(url);
            ASSERT_TRUE(run.Await("ada: "));
            EXPECT_FALSE(run.IsEchoOn());
            if (stopped) {
                run.Type("sec\x1a");
                ASSERT_TRUE(run.Await("<148>"));
                EXPECT_TRUE(run.IsEchoOn());
                run.Type("\n");
                ASSERT_TRUE(run.Await("ada: "));
                EXPECT_FALSE(run.IsEchoOn());
            }
            run.Type(test.typed);
            EXPECT_TRUE(run.Await(test.status)) << run.Output();
            EXPECT_TRUE(run.IsEchoOn());
            EXPECT_EQ(std::string::npos, run.Output().find("sec"));
        }
    }
}

} // namespace
} // namespace brevint::test
