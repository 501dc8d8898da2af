// What "get -o" writes to that is no ordinary file. Only here: Windows has few of them.

#include "service/ReferenceService.h"
#include "tests/cli/ClientFixture.h"

#include <csignal>
#include <future>

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

namespace brevint::test {
namespace {

namespace fs = std::filesystem;

constexpr char kNotes[] = "/Projects/Bridge/Notes.txt";
constexpr char kContent[] = "Span 3 needs a second look.\n";
constexpr char kBig[] = "/Projects/Big.bin"; // more than a pipe holds

class ClientOutputTest : public ClientTest {
protected:
    ClientOutputTest() {
        m_service.Start();
        EXPECT_EQ(
            0,
            Run({"sign-in", "--url", m_service.Url(), "--user", "ada"}, "ada-secret\n").exitCode);
        mkfifo((Work() / "pipe").c_str(), 0600);
    }

    static service::ServiceOptions Options() {
        service::ServiceOptions options;
        options.patternFiles = {{"Big.bin", 3'000'000}};
        return options;
    }

    service::ReferenceService m_service{Options()};
};

TEST_F(ClientOutputTest, IsWrittenAsItIs) {
    WriteFile(Work() / "target", "old");
    chmod((Work() / "target").c_str(), 0640);
    fs::create_symlink("target", Work() / "link");
    auto reader = std::async(std::launch::async, ReadFile, Work() / "pipe");
    for (const char* output : {"link", "pipe", "/dev/null"}) {
        const auto result = Run({"get", kNotes, "-o", output});
        EXPECT_EQ(0, result.exitCode) << result.error;
    }
    EXPECT_EQ(kContent, reader.get());
    EXPECT_TRUE(fs::is_symlink(Work() / "link"));
    EXPECT_EQ(kContent, ReadFile(Work() / "target"));
    EXPECT_EQ(static_cast<fs::perms>(0640), fs::status(Work() / "target").permissions());
    EXPECT_TRUE(fs::is_character_file("/dev/null"));

    EXPECT_EQ(kContent, Run({"get", kNotes, "-o", "/dev/stdout"}).output);
    EXPECT_EQ(5, Run({"get", kNotes, "-o", "/dev/full"}).exitCode);
    EXPECT_EQ(5, Run({"get", kNotes, "-o", "."}).exitCode);
    EXPECT_EQ((std::set<std::string>{"link", "pipe", "target"}), WorkNames());
}

TEST_F(ClientOutputTest, IsNotWaitedForWithoutEnd) {
    // Ctrl-C ends a write to a pipe that nobody empties; one that nobody reads any more ends it
    // too.
    for (const bool interrupted : {true, false}) {
        const int reader = open((Work() / "pipe").c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
        ClientRun run = Start({"get", kBig, "-o", "pipe"});
        pollfd written = {reader, POLLIN, 0};
        ASSERT_EQ(1, poll(&written, 1, 60'000));
        if (interrupted) {
            kill(static_cast<pid_t>(run.ProcessId()), SIGINT);
            EXPECT_EQ(130, run.Wait().exitCode);
        }
        close(reader);
        if (!interrupted) {
            EXPECT_EQ(5, run.Wait().exitCode);
        }
    }
    EXPECT_EQ(std::set<std::string>{"pipe"}, WorkNames());
}

} // namespace
} // namespace brevint::test
