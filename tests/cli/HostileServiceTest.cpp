// What a broken or malicious service cannot bring about.

#include "tests/cli/ClientFixture.h"
#include "tests/support/ScriptedServer.h"

#include <regex>

namespace brevint::test {
namespace {

class ClientHostileServiceTest : public ClientTest {
protected:
    ClientHostileServiceTest() {
        KeepSession(Narrow(m_server.Url("")), "FedAuth=a; FedAuth1=b");
        WriteFile(Work() / "old", "old");
    }

    ScriptedServer::Script& OnFile() { return m_server.On("/Repository/Files/abc"); }

    void ExpectUntouched() {
        EXPECT_EQ("old", ReadFile(Work() / "old"));
        EXPECT_EQ(std::set<std::string>{"old"}, WorkNames());
    }

    ScriptedServer m_server;
};

// It breaks off, or is whole and yet another than listed.
TEST_F(ClientHostileServiceTest, DownloadIsNotTheFile) {
    OnFile().Head(200, {{"Content-Length", "1000"}}).SendPattern(300).Reset();
    OnFile().Reply(200, {}, "new");
    m_server.On("/Repository/Items/r/Path")
        .Reply(200, {}, "<ResponseData><Path>/P</Path></ResponseData>");
    m_server.On("/Repository/Items/r/Items")
        .Reply(200, {},
               "<ResponseData><Item><Name>x</Name><UniqueId>abc</UniqueId>"
               "<Data><Size>4</Size></Data></Item></ResponseData>");
    for (int run = 0; run < 2; ++run) {
        EXPECT_EQ(4, Run({"get", "/P/x", "-o", "old", "--root", "r"}).exitCode);
        ExpectUntouched();
    }
    EXPECT_EQ(2U, m_server.RequestsFor("/Repository/Files/abc").size());
}

TEST_F(ClientHostileServiceTest, SilenceIsNotWaitedForWithoutEnd) {
    m_server.On("*").Wait("never");
    EXPECT_EQ(6, Run({"put", "old", "--to", "abc", "--timeout", "1"}).exitCode);
}

TEST_F(ClientHostileServiceTest, NamesLeadNowhereElse) {
    m_server.On("/Repository/Items/abc/Path")
        .Reply(200, {}, "<ResponseData><Path>/a/..\\b</Path></ResponseData>");
    EXPECT_EQ(5, Run({"get", "abc"}).exitCode);
    EXPECT_TRUE(m_server.RequestsFor("/Repository/Files/abc").empty());
    ExpectUntouched();
}

TEST_F(ClientHostileServiceTest, TextsDoNotSteerTheTerminal) {
    m_server.On("/Repository/Items/abc/Items")
        .Reply(200, {},
               "<ResponseData><Item><Name>a\u009B2J\u202Eb&#10;c</Name></Item></ResponseData>");
    m_server.On("/Repository/Items/abd/Items")
        .Reply(400, {}, "<ResponseData><Message>a\u009B2J\u202Eb&#10;c</Message></ResponseData>");
    EXPECT_NE(std::string::npos, Run({"ls", "\x1b[2J\r"}).error.find("\"\uFFFD[2J\uFFFD\""));
    for (const std::string& text : {Run({"ls", "abc"}).output, Run({"ls", "abd"}).error}) {
        EXPECT_NE(std::string::npos, text.find("a\uFFFD2J\uFFFDb\uFFFDc")) << text;
    }
    EXPECT_EQ("a\u009B2J\u202Eb\nc", RunJson({"ls", "abc"})["items"][0]["name"]);
}

/// One sign-in at a service that goes wrong, or does not. In its texts "%app" is the address of the
/// service, "%port" its port, and "%other" another service.
struct SignInCase {
    const char* what;
    const char* portal; ///< Where the service sends the sign-in; "" for a page of its own.
    const char* form;   ///< Where the form of the portal's page goes, or the portal's refusal.
    int exitCode;
    const char* says;            ///< On standard error.
    const char* untouched = "-"; ///< The path that nothing may be sent to.
    const char* option = "--json";
};

constexpr SignInCase kSignIns[] = {
    {"all is well", "%app/portal", "%app/form", 0, ""},
    {"the portal in clear", "http://127.1:%port/portal", "", 1, "unencrypted", "/portal"},
    {"the same, allowed", "http://127.1:%port/app/portal", "%app/form", 0, "", "-",
     "--insecure-http"},
    {"no address", "//127.0.0.1:%port/portal", "", 1, "no http or https", "/portal"},
    {"another host's form", "%app/portal", "http://localhost:%port/app/form", 1, "another host",
     "/app/form"},
    {"another service's form", "%app/portal", "%other", 1, "another host"},
    {"the token in clear", "%app/portal", "http://127.1:%port/app/form", 1, "unencrypted",
     "/app/form"},
    {"a session for another folder", "%app/portal", "%app-other/form", 1, "no session"},
    {"a refusal", "%app/portal", "Locked out.", 3, "The portal says: \"Locked out.\""},
    {"a refusal in the client's words", "%app/portal", "Please call the help desk (%app)", 3,
     "cannot be used"},
    {"no portal", "", "", 1, "without asking"},
};

// A service that signs the user in elsewhere, or sends the password or the token in clear.
TEST_F(ClientTest, SignsInToTheServiceAloneAndInSecret) {
    for (const SignInCase& test : kSignIns) {
        SCOPED_TRACE(test.what);
        ScriptedServer server;
        ScriptedServer other;
        const std::string app = Narrow(server.Url("/app"));
        const auto fill = [&](std::string text) {
            text = std::regex_replace(text, std::regex("%app"), app);
            text = std::regex_replace(text, std::regex("%port"), std::to_string(server.Port()));
            return std::regex_replace(text, std::regex("%other"), Narrow(other.Url("/form")));
        };
        const std::string form = fill(test.form);
        const std::string page =
            test.exitCode == 3
                ? "<failureMessage>" + form + "</failureMessage>"
                : "<form action='" + form + "'><input type='hidden' name='token' value='t'>";
        server.On("/app").Reply(*test.portal ? 302 : 200, {{"Location", fill(test.portal)}}, "<p>");
        server.On("/portal").Reply(200, {}, page);
        server.On("/app/portal").Reply(200, {}, page);
        for (const auto& [target, path] :
             {std::pair("/app/form", "/"), std::pair("/app-other/form", "/app-other")}) {
            server.On(target).Reply(200,
                                    {{"Set-Cookie", "FedAuth=secret; Path=" + std::string(path)},
                                     {"Set-Cookie", "FedAuth1=b; Path=" + std::string(path)}});
        }
        const auto result =
            Run({"sign-in", "--url", app, "--user", "ada", test.option}, "password\n");
        EXPECT_EQ(test.exitCode, result.exitCode) << result.error;
        EXPECT_NE(std::string::npos, result.error.find(test.says)) << result.error;
        EXPECT_EQ(std::string::npos, result.error.find("help desk"));
        EXPECT_EQ(test.exitCode == 0, ReadFile(SessionFile()).find("secret") != std::string::npos);
        EXPECT_EQ(0U, other.ConnectionCount());
        for (const ScriptedServer::Request& request : server.Requests()) {
            EXPECT_FALSE(request.target.starts_with(test.untouched)) << request.target;
        }
        std::filesystem::remove(SessionFile());
    }
}

} // namespace
} // namespace brevint::test
