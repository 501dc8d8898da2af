// What Windows does not have: pipes and devices to write to, signals, owners of folders.

#include "tests/cli/ClientFixture.h"
#include "tests/support/ScriptedServer.h"

#include <csignal>
#include <future>

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

namespace brevint::test {
namespace {

namespace fs = std::filesystem;

class ClientSystemTest : public ClientServiceTest {
protected:
    ClientSystemTest() {
        EXPECT_EQ(0, SignIn().exitCode);
        mkfifo((Work() / "pipe").c_str(), 0600);
    }
};

TEST_F(ClientSystemTest, WritesToWhatIsNoOrdinaryFile) {
    constexpr char kNotes[] = "/Projects/Bridge/Notes.txt";
    constexpr char kContent[] = "Span 3 needs a second look.\n";
    auto reader = std::async(std::launch::async, ReadFile, Work() / "pipe");
    EXPECT_EQ(0, Run({"get", kNotes, "-o", "pipe"}).exitCode);
    EXPECT_EQ(kContent, reader.get());
    EXPECT_EQ(kContent, Run({"get", kNotes, "-o", "/dev/stdout"}).output);
    EXPECT_EQ(5, Run({"get", kNotes, "-o", "/dev/full"}).exitCode);
    for (const char* place : {"elsewhere", "pipe"}) { // only what -o names is followed
        fs::create_symlink(place, Work() / "Notes.txt");
        EXPECT_EQ(1, Run({"get", kNotes, "--overwrite"}).exitCode);
        fs::remove(Work() / "Notes.txt");
    }
    EXPECT_EQ(std::set<std::string>{"pipe"}, WorkNames());
}

// Ctrl-C ends a write to a pipe that nobody empties; one that nobody reads any more ends it too.
TEST_F(ClientSystemTest, DoesNotWaitForAReaderWithoutEnd) {
    for (const bool interrupted : {true, false}) {
        const int reader = open((Work() / "pipe").c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
        ClientRun run = Start({"get", kBig, "-o", "pipe"});
        pollfd written = {reader, POLLIN, 0};
        ASSERT_EQ(1, poll(&written, 1, 60'000));
        if (interrupted) {
            kill(run.ProcessId(), SIGINT);
            EXPECT_EQ(130, run.Wait().exitCode);
            close(reader);
        } else {
            close(reader);
            EXPECT_EQ(5, run.Wait().exitCode);
        }
    }
    EXPECT_EQ(std::set<std::string>{"pipe"}, WorkNames());
}

TEST_F(ClientSystemTest, DoesNotWaitForAReaderOfItsResults) {
    const fs::path output = Streams() / "output";
    fs::remove(output); // that of the sign-in
    mkfifo(output.c_str(), 0600);
    const int reader = open(output.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    std::vector<std::string> arguments(100, "/Projects/Bridge"); // more than a pipe holds
    arguments.insert(arguments.begin(), {"ls", "--json"});
    ClientRun run = Start(arguments);
    pollfd written = {reader, POLLIN, 0};
    ASSERT_EQ(1, poll(&written, 1, 60'000));
    kill(run.ProcessId(), SIGINT);
    fs::remove(output);
    EXPECT_EQ(130, run.Wait().exitCode);
    close(reader);
}

TEST_F(ClientTest, LeavesNothingBehindWhenInterrupted) {
    ScriptedServer server;
    server.On("/Repository/Files/abc")
        .Head(200, {{"Content-Length", "1000"}})
        .SendPattern(300)
        .Wait("never");
    server.On("/Repository/Files/abd")
        .Head(200, {{"Content-Length", "20000000"}, {"ETag", "\"1\""}})
        .SendPattern(16'000'000) // more than waits between the two: it has begun to write
        .Wait("poured");
    server.On("/Repository/Items/abc/Files").Wait("silent");
    KeepSession(Narrow(server.Url("")), "FedAuth=a; FedAuth1=b");
    server.On("/Repository/Items/abc/Items").Reply(200, {}, "<ResponseData></ResponseData>");
    WriteFile(Work() / "old", "old");
    for (const auto& [gate, arguments] :
         {std::pair("never", std::vector<std::string>{"get", "abc", "-o", "old"}),
          {"poured", {"cat", "abd"}},
          {"silent", {"put", "old", "--to", "abc"}}}) {
        ClientRun run = Start(arguments);
        ASSERT_TRUE(server.AwaitArrivalAt(gate));
        kill(run.ProcessId(), SIGINT);
        const ClientRun::Result ended = run.Wait();
        EXPECT_EQ(130, ended.exitCode);
        EXPECT_EQ(arguments[0] == "get", ended.error.find("goes on") != std::string::npos);
        EXPECT_EQ("old", ReadFile(Work() / "old"));
        EXPECT_EQ(std::set<std::string>{"old"}, WorkNames());
        const auto state = fs::directory_iterator(SessionFile().parent_path());
        EXPECT_EQ(1, std::distance(begin(state), end(state)));
    }
}

TEST_F(ClientTest, RefusesAStateFolderOfSomebodyElse) {
    KeepSession("https://host", "a=b");
    const fs::path folder = SessionFile().parent_path();
    if (geteuid() == 0) {
        ASSERT_EQ(0, chown(folder.c_str(), 65534, 65534));
    } else {
        fs::remove_all(folder);
        fs::create_directory_symlink("/", folder);
    }
    const auto result = Run({"ls"});
    EXPECT_EQ(5, result.exitCode);
    EXPECT_NE(std::string::npos, result.error.find("is not one of yours")) << result.error;
}

} // namespace
} // namespace brevint::test
