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
        EXPECT_EQ(4, Run({"get", "/P/x", "-o", "old", "--root", "P=r"}).exitCode);
        ExpectUntouched();
    }
}

TEST_F(ClientHostileServiceTest, SilenceIsNotWaitedForWithoutEnd) {
    m_server.On("*").Wait("never");
    EXPECT_EQ(6, Run({"put", "old", "--to", "abc", "--timeout", "1"}).exitCode);
    // A walk ends with the first folder: the second would be waited for in vain too.
    const std::string folder = "<Item><Name>x</Name><ItemType>0</ItemType><UniqueId>";
    m_server.On("/Repository/Items/abd/Items")
        .Reply(200, {},
               "<ResponseData>" + folder + "abe</UniqueId></Item>" + folder +
                   "abf</UniqueId></Item></ResponseData>");
    EXPECT_EQ(2U, RunJson({"ls", "-R", "abd", "--timeout", "1"}, 6)["folders"].size());
}

TEST_F(ClientHostileServiceTest, NamesLeadNowhereElse) {
    m_server.On("/Repository/Items/abc/Path")
        .Reply(200, {}, "<ResponseData><Path>/a/..\\b</Path></ResponseData>");
    EXPECT_EQ(5, Run({"get", "abc"}).exitCode);
    EXPECT_EQ(2, Run({"rm", "abc"}).exitCode); // it may be a folder
    EXPECT_TRUE(m_server.RequestsFor("/Repository/Files/abc").empty());
    ExpectUntouched();
}

TEST_F(ClientHostileServiceTest, FoldersDoNotLieInThemselves) {
    for (const auto& [folder, held] : {std::pair("abc", "abd"), {"abd", "abc"}}) {
        m_server.On("/Repository/Items/" + std::string(folder) + "/Items")
            .Reply(200, {},
                   "<ResponseData><Item><Name>x</Name><ItemType>0</ItemType><UniqueId>" +
                       std::string(held) + "</UniqueId></Item></ResponseData>");
    }
    EXPECT_EQ(3U, RunJson({"ls", "-R", "abc"}, 1)["folders"].size());
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
    EXPECT_EQ("a\u009B2J\u202Eb\nc", RunJson({"ls", "abc"})["folders"][0]["items"][0]["name"]);
}

/// One sign-in. "%port" is the port of the service.
struct SignInCase {
    const char* what;
    const char* portal;  ///< Where the service sends the sign-in.
    const char* refusal; ///< The portal's words; "": it sends its form.
    int exitCode;
    const char* says; ///< On standard error.
    const char* option = "--json";
};

constexpr SignInCase kSignIns[] = {
    {"all is well", "http://127.0.0.1:%port/app/portal", "", 0, ""},
    {"the portal in clear", "http://127.1:%port/app/portal", "", 1, "unencrypted"},
    {"the same, allowed", "http://127.1:%port/app/portal", "", 0, "", "--insecure-http"},
    {"a refusal", "http://127.0.0.1:%port/app/portal", "Locked out.", 3,
     "The portal says: \"Locked out.\""},
};

TEST_F(ClientTest, SignsInInSecretUnlessToldOtherwise) {
    for (const SignInCase& test : kSignIns) {
        SCOPED_TRACE(test.what);
        ScriptedServer server;
        const std::string app = Narrow(server.Url("/app"));
        const std::string portal =
            std::regex_replace(test.portal, std::regex("%port"), std::to_string(server.Port()));
        server.On("/app").Reply(302, {{"Location", portal}});
        server.On("POST /app/portal?mode=VX")
            .Reply(200, {},
                   *test.refusal
                       ? "<failureMessage>" + std::string(test.refusal) + "</failureMessage>"
                       : "<form action='" + app +
                             "/form'><input type='hidden' name='token' value='t'>");
        server.On("POST /app/form")
            .Reply(200, {{"Set-Cookie", "FedAuth=secret; Path=/"},
                         {"Set-Cookie", "FedAuth1=b; Path=/"}});
        server.On("/app/application/identity")
            .Reply(200, {},
                   "<ResponseData><Name>ada</Name><IsUser>true</IsUser>"
                   "<IdentifyingPartyUri>p</IdentifyingPartyUri></ResponseData>");
        const auto result =
            Run({"sign-in", "--url", app, "--user", "ada", test.option}, "password\n");
        EXPECT_EQ(test.exitCode, result.exitCode) << result.error;
        EXPECT_NE(std::string::npos, result.error.find(test.says)) << result.error;
        EXPECT_EQ(test.exitCode == 0, ReadFile(SessionFile()).find("secret") != std::string::npos);
        std::filesystem::remove(SessionFile());
    }
}

} // namespace
} // namespace brevint::test
