// What a broken or malicious service cannot bring about.

#include "cli/Utf8.h"
#include "tests/cli/ClientFixture.h"
#include "tests/support/ScriptedServer.h"

namespace brevint::test {
namespace {

class ClientHostileServiceTest : public ClientTest {
protected:
    ClientHostileServiceTest() {
        KeepSession(cli::ToUtf8(server_.Url("")), "FedAuth=a; FedAuth1=b");
        WriteFile(Work() / "old", "old");
    }

    ScriptedServer::Script& OnFile() { return server_.On("/Repository/Files/abc"); }

    /// Runs a download that must leave the old file as it was, and nothing else.
    int Get() {
        const auto result = Run({"get", "abc", "-o", "old"});
        EXPECT_NE("", result.error);
        ExpectUntouched();
        return result.exitCode;
    }

    void ExpectUntouched() {
        EXPECT_EQ("old", ReadFile(Work() / "old"));
        EXPECT_EQ(std::set<std::string>{"old"}, WorkNames());
    }

    ScriptedServer server_;
};

TEST_F(ClientHostileServiceTest, TransferBreaksOff) {
    OnFile().Head(200, {{"Content-Length", "1000"}}).SendPattern(300).Reset();
    server_.On("/Repository/Items/abc/Path").Reply(404);
    EXPECT_EQ(4, Get());
}

TEST_F(ClientHostileServiceTest, FileIsShorterThanListed) {
    server_.On("/Repository/Items/r/Path")
        .Reply(200, {}, "<ResponseData><Path>/P</Path></ResponseData>");
    server_.On("/Repository/Items/r/Items")
        .Reply(200, {},
               "<ResponseData><Item><Name>x</Name><UniqueId>abc</UniqueId>"
               "<Data><Size>4</Size></Data></Item></ResponseData>");
    OnFile().Reply(200, {}, "new");
    EXPECT_EQ(4, Run({"get", "/P/x", "-o", "old", "--root", "r"}).exitCode);
    ExpectUntouched();
}

TEST_F(ClientHostileServiceTest, SilenceIsNotWaitedForWithoutEnd) {
    server_.On("*").Wait("never");
    EXPECT_EQ(6, Run({"put", "old", "--to", "abc", "--timeout", "1"}).exitCode);
}

TEST_F(ClientHostileServiceTest, NamesLeadNowhereElse) {
    OnFile().Reply(200, {}, "new");
    for (const char* path : {"", "/", "/a/..", "/a/..\\b", "/a/C:b", "/a/b&#10;c"}) {
        ScriptedServer server;
        server.On("/Repository/Files/abc").Reply(200, {}, "new");
        server.On("/Repository/Items/abc/Path")
            .Reply(200, {}, "<ResponseData><Path>" + std::string(path) + "</Path></ResponseData>");
        KeepSession(cli::ToUtf8(server.Url("")), "a=b");
        EXPECT_EQ(5, Run({"get", "abc"}).exitCode) << path;
        EXPECT_TRUE(server.RequestsFor("/Repository/Files/abc").empty());
        ExpectUntouched();
    }
}

TEST_F(ClientHostileServiceTest, TextsDoNotSteerTheTerminal) {
    server_.On("/Repository/Items/abc/Items")
        .Reply(200, {},
               "<ResponseData><Item><Name>a\u009B2J\u202Eb&#10;c</Name></Item></ResponseData>");
    server_.On("/Repository/Items/abd/Items")
        .Reply(400, {}, "<ResponseData><Message>a\u009B2J\u202Eb&#10;c</Message></ResponseData>");
    const auto listed = Run({"ls", "abc"});
    EXPECT_EQ(0, listed.exitCode);
    const auto refused = Run({"ls", "abd"});
    EXPECT_EQ(1, refused.exitCode);
    EXPECT_NE(std::string::npos, Run({"ls", "\x1b[2J\r"}).error.find("\"\uFFFD[2J\uFFFD\""));
    for (const std::string& text : {listed.output, refused.error}) {
        EXPECT_NE(std::string::npos, text.find("a\uFFFD2J\uFFFDb\uFFFDc")) << text;
    }
    EXPECT_EQ("a\u009B2J\u202Eb\nc", RunJson({"ls", "abc"})["items"][0]["name"]);
}

} // namespace
} // namespace brevint::test
