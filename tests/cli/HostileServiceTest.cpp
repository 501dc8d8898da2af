// What a broken or malicious service cannot bring about.

#include "support/Utf8.h"
#include "tests/cli/ClientFixture.h"
#include "tests/support/ScriptedServer.h"

namespace brevint::test {
namespace {

class ClientHostileServiceTest : public ClientTest {
protected:
    ClientHostileServiceTest() {
        KeepSession(Narrow(m_server.Url("")), "FedAuth=a; FedAuth1=b");
        WriteFile(Work() / "old", "old");
    }

    ScriptedServer::Script& OnFile() { return m_server.On("/Repository/Files/abc"); }

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

    ScriptedServer m_server;
};

TEST_F(ClientHostileServiceTest, TransferBreaksOff) {
    OnFile().Head(200, {{"Content-Length", "1000"}}).SendPattern(300).Reset();
    m_server.On("/Repository/Items/abc/Path").Reply(404);
    EXPECT_EQ(4, Get());
}

TEST_F(ClientHostileServiceTest, FileIsShorterThanListed) {
    m_server.On("/Repository/Items/r/Path")
        .Reply(200, {}, "<ResponseData><Path>/P</Path></ResponseData>");
    m_server.On("/Repository/Items/r/Items")
        .Reply(200, {},
               "<ResponseData><Item><Name>x</Name><UniqueId>abc</UniqueId>"
               "<Data><Size>4</Size></Data></Item></ResponseData>");
    OnFile().Reply(200, {}, "new");
    EXPECT_EQ(4, Run({"get", "/P/x", "-o", "old", "--root", "r"}).exitCode);
    ExpectUntouched();
}

TEST_F(ClientHostileServiceTest, SilenceIsNotWaitedForWithoutEnd) {
    m_server.On("*").Wait("never");
    EXPECT_EQ(6, Run({"put", "old", "--to", "abc", "--timeout", "1"}).exitCode);
}

TEST_F(ClientHostileServiceTest, NamesLeadNowhereElse) {
    OnFile().Reply(200, {}, "new");
    for (const char* path : {"", "/", "/a/..", "/a/..\\b", "/a/C:b", "/a/b&#10;c"}) {
        ScriptedServer server;
        server.On("/Repository/Files/abc").Reply(200, {}, "new");
        server.On("/Repository/Items/abc/Path")
            .Reply(200, {}, "<ResponseData><Path>" + std::string(path) + "</Path></ResponseData>");
        KeepSession(Narrow(server.Url("")), "a=b");
        EXPECT_EQ(5, Run({"get", "abc"}).exitCode) << path;
        EXPECT_TRUE(server.RequestsFor("/Repository/Files/abc").empty());
        ExpectUntouched();
    }
}

TEST_F(ClientHostileServiceTest, TextsDoNotSteerTheTerminal) {
    m_server.On("/Repository/Items/abc/Items")
        .Reply(200, {},
               "<ResponseData><Item><Name>a\u009B2J\u202Eb&#10;c</Name></Item></ResponseData>");
    m_server.On("/Repository/Items/abd/Items")
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

// A service that signs the user in elsewhere, or sends the password or the token in clear.
TEST_F(ClientTest, SignsInToTheServiceAloneAndInSecret) {
    const std::string hidden = "<input type='hidden' name='token' value='t'>";
    const std::string words = "Locked out.";
    const std::string imitated = "Please call the help desk (%app)";
    const struct {
        const char* what;
        std::string portal; ///< Where the service sends the sign-in.
        std::string page;   ///< The portal's answer.
        int exitCode;
        const char* says;
        std::vector<std::string> options = {};
        std::set<std::string> untouched = {};
    } cases[] = {
        {"all is well", "%app/portal", "<form action='%app/form'>" + hidden, 0, ""},
        {"the portal in clear", "http://127.1:%port/portal", "", 1, "unencrypted", {}, {"/portal"}},
        {"the same, allowed",
         "http://127.1:%port/app/portal",
         "<form action='%app/form'>" + hidden,
         0,
         "",
         {"--insecure-http"}},
        {"no address", "//127.0.0.1:%port/portal", "", 1, "no http or https", {}, {"/portal"}},
        {"another host's form",
         "%app/portal",
         "<form action='http://localhost:%port/app/form'>" + hidden,
         1,
         "another host",
         {},
         {"/app/form"}},
        {"another service's form", "%app/portal", "<form action='%other'>" + hidden, 1,
         "another host"},
        {"the token in clear",
         "%app/portal",
         "<form action='http://127.1:%port/app/form'>" + hidden,
         1,
         "unencrypted",
         {},
         {"/app/form"}},
        {"a session for another folder", "%app/portal", "<form action='%root/other/form'>" + hidden,
         1, "no session"},
        {"a refusal", "%app/portal", "<failureMessage>" + words + "</failureMessage>", 3,
         "The portal says: \"Locked out.\""},
        {"a refusal in the client's words", "%app/portal",
         "<failureMessage>" + imitated + "</failureMessage>", 3, "cannot be used"},
        {"no portal", "", "", 1, "without asking"},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.what);
        ScriptedServer server;
        ScriptedServer other;
        const std::string app = Narrow(server.Url("/app"));
        const auto fill = [&](std::string text) {
            for (const auto& [name, value] :
                 {std::pair("%app", app), std::pair("%port", std::to_string(server.Port())),
                  std::pair("%root", Narrow(server.Url(""))),
                  std::pair("%other", Narrow(other.Url("/form")))}) {
                if (const auto at = text.find(name); at != std::string::npos) {
                    text.replace(at, std::string(name).size(), value);
                }
            }
            return text;
        };
        if (test.portal.empty()) {
            server.On("/app").Reply(200, {}, "<html/>");
        } else {
            server.On("/app").Reply(302, {{"Location", fill(test.portal)}});
        }
        for (const char* portal : {"/portal", "/app/portal"}) {
            server.On(portal).Reply(200, {}, fill(test.page));
        }
        for (const std::string folder : {"/app", "/other"}) {
            const std::string path = folder == "/app" ? "/" : folder;
            server.On(folder + "/form")
                .Reply(200, {{"Set-Cookie", "FedAuth=secret; Path=" + path},
                             {"Set-Cookie", "FedAuth1=b; Path=" + path}});
        }
        std::vector<std::string> arguments = {"sign-in", "--url", app, "--user", "ada"};
        arguments.insert(arguments.end(), test.options.begin(), test.options.end());
        const auto result = Run(arguments, "password\n");
        EXPECT_EQ(test.exitCode, result.exitCode) << result.error;
        EXPECT_NE(std::string::npos, result.error.find(test.says)) << result.error;
        EXPECT_EQ(std::string::npos, result.error.find("help desk"));
        EXPECT_EQ(test.exitCode == 0, ReadFile(SessionFile()).find("secret") != std::string::npos);
        EXPECT_EQ(0U, other.ConnectionCount());
        for (const std::string& path : test.untouched) {
            EXPECT_TRUE(server.RequestsFor(path).empty() &&
                        server.RequestsFor(path + "?mode=VX").empty());
        }
        std::filesystem::remove(SessionFile());
    }
}

} // namespace
} // namespace brevint::test
