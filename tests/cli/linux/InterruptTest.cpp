// Ctrl-C during a transfer. Only here: a Windows program without a console cannot be sent one.

#include "support/Utf8.h"
#include "tests/cli/ClientFixture.h"
#include "tests/support/ScriptedServer.h"

#include <csignal>

namespace brevint::test {
namespace {

TEST_F(ClientTest, LeavesNothingBehindWhenInterrupted) {
    ScriptedServer server;
    server.On("/Repository/Files/abc")
        .Head(200, {{"Content-Length", "1000"}})
        .SendPattern(300)
        .Wait("never");
    KeepSession(Narrow(server.Url("")), "a=b");
    WriteFile(Work() / "old", "old");
    server.On("/Repository/Items/abc/Files").Wait("silent");
    for (const auto& [gate, arguments] :
         {std::pair("never", std::vector<std::string>{"get", "abc", "-o", "old"}),
          {"silent", {"put", "old", "--to", "abc"}}}) {
        ClientRun run = Start(arguments);
        ASSERT_TRUE(server.AwaitArrivalAt(gate));
        kill(static_cast<pid_t>(run.ProcessId()), SIGINT);
        EXPECT_EQ(130, run.Wait().exitCode);
        EXPECT_EQ("old", ReadFile(Work() / "old"));
        EXPECT_EQ(std::set<std::string>{"old"}, WorkNames());
    }
}

} // namespace
} // namespace brevint::test
