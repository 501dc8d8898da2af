// Signing in and out, and what is kept in between.

#include "cli/session/PrivateFile.h"
#include "cli/session/Session.h"
#include "service/ReferenceService.h"
#include "tests/cli/ClientFixture.h"
#include "tests/support/RefusedPort.h"

#include <future>

namespace brevint::test {
namespace {

class ClientSignInTest : public ClientTest {
protected:
    ClientSignInTest() { m_service.Start(); }

    ClientRun::Result SignIn(const std::string& user, const std::string& input) {
        return Run({"sign-in", "--url", m_service.Url(), "--user", user}, input);
    }

    service::ReferenceService m_service;
};

TEST_F(ClientSignInTest, KeepsASessionThatIsTheUsersAlone) {
    const auto result = SignIn("ada", "ada-secret\nnot the password\n");
    EXPECT_EQ(0, result.exitCode) << result.error;
    const auto session = cli::ReadPrivateFile(SessionFile());
    ASSERT_TRUE(session);
    EXPECT_NE(std::string::npos, session->find("FedAuth1="));
    for (const std::string& text : {*session, result.output, result.error}) {
        EXPECT_EQ(std::string::npos, text.find("ada-secret"));
    }
    EXPECT_EQ((nlohmann::json{{"user", "ada"},
                              {"role", "administrator"},
                              {"url", m_service.Url().substr(0, m_service.Url().size() - 1)},
                              {"portal", m_service.Url() + "portal/login"}}),
              RunJson({"whoami"}));
}

TEST_F(ClientSignInTest, TellsWhyItFailed) {
    const auto result = SignIn("ada", "ada\n");
    EXPECT_EQ(3, result.exitCode);
    EXPECT_EQ("", result.output);
    EXPECT_NE(std::string::npos, result.error.find("The user name or password is incorrect."));
    EXPECT_FALSE(std::filesystem::exists(SessionFile()));
}

TEST_F(ClientSignInTest, TakesTheCookiesToNoOtherAddress) {
    service::ReferenceService other;
    other.Start();
    ASSERT_EQ(0, SignIn("ada", "ada-secret\n").exitCode);
    EXPECT_EQ(3, Run({"ls", "--url", other.Url()}).exitCode);
    EXPECT_EQ(0, Run({"ls", "--url", m_service.Url()}).exitCode);
}

TEST_F(ClientSignInTest, IsOverAfterSignOut) {
    ASSERT_EQ(0, SignIn("ben", "ben-secret\n").exitCode);
    const std::string session = ReadFile(SessionFile());
    EXPECT_EQ(0, Run({"sign-out"}).exitCode);
    EXPECT_FALSE(std::filesystem::exists(SessionFile()));
    EXPECT_EQ(3, Run({"ls"}).exitCode);

    // The service has forgotten it too, which a second sign-out does not mind.
    cli::CreatePrivateFile(SessionFile(), session);
    EXPECT_EQ(3, Run({"ls"}).exitCode);
    EXPECT_EQ(0, Run({"sign-out"}).exitCode);
    EXPECT_EQ(3, Run({"sign-out"}).exitCode);
}

TEST_F(ClientSignInTest, RefusesASessionThatIsDamagedOrOpenToOthers) {
    ASSERT_EQ(0, SignIn("ada", "ada-secret\n").exitCode);
    OpenToEverybody(SessionFile());
    const auto result = Run({"ls"});
    EXPECT_EQ(5, result.exitCode);
    EXPECT_NE(std::string::npos, result.error.find("session.json"));
    ASSERT_EQ(0, SignIn("ada", "ada-secret\n").exitCode);
    EXPECT_EQ(0, Run({"ls"}).exitCode);
    std::filesystem::resize_file(SessionFile(), 40);
    EXPECT_EQ(5, Run({"ls"}).exitCode);
}

TEST_F(ClientSignInTest, RefusesAFolderThatOthersMayWriteTo) {
    ASSERT_EQ(0, SignIn("ada", "ada-secret\n").exitCode);
    OpenToEverybody(SessionFile().parent_path());
    for (const auto& result : {Run({"ls"}), SignIn("ada", "ada-secret\n")}) {
        EXPECT_EQ(5, result.exitCode);
        EXPECT_NE(std::string::npos, result.error.find("nobody else may write to"));
    }
}

// One program replaces the session while the other reads it.
TEST_F(ClientTest, ReadsTheSessionWhole) {
    const std::string cookies(50'000, 'c');
    KeepSession("https://host", cookies);
    const auto writer = std::async(std::launch::async, [&] {
        for (int i = 0; i < 100; ++i) {
            KeepSession("https://host", cookies);
        }
    });
    for (int i = 0; i < 100; ++i) {
        EXPECT_EQ(cookies, cli::LoadSession().value().cookies);
    }
}

TEST_F(ClientTest, WithoutAServiceSaysSo) {
    const RefusedPort port;
    const std::string url = "http://127.0.0.1:" + std::to_string(port.Port());
    const auto signIn = Run({"sign-in", "--url", url, "--user", "ada"}, "x\n");
    EXPECT_EQ(4, signIn.exitCode);
    EXPECT_NE(std::string::npos, signIn.error.find(url));
    KeepSession(url, "a=b");
    for (const char* command : {"ls", "whoami", "versions"}) {
        EXPECT_EQ(4, RunJson({command}, 4)["error"]["exitCode"]) << command;
    }
    EXPECT_EQ(4, Run({"get", "abc", "-o", "x"}).exitCode);
    EXPECT_EQ(4, Run({"sign-out"}).exitCode);
    EXPECT_FALSE(std::filesystem::exists(SessionFile()));
    EXPECT_EQ(std::set<std::string>(), WorkNames());
}

TEST_F(ClientTest, ExplainsItself) {
    const auto help = Run({"--help"});
    EXPECT_EQ(0, help.exitCode);
    EXPECT_NE(std::string::npos, help.output.find("130  interrupted"));
    EXPECT_EQ(0U, Run({"--version"}).output.find("brevint "));
    for (const std::vector<std::string>& wrong : std::vector<std::vector<std::string>>{
             {}, {"frobnicate"}, {"ls", "--frobnicate"}, {"get"}, {"ls", "--timeout", "-1"}}) {
        const auto result = Run(wrong);
        EXPECT_EQ(2, result.exitCode);
        EXPECT_EQ("", result.output);
        EXPECT_NE("", result.error);
    }
    EXPECT_EQ(2, RunJson({"ls", "--frobnicate"}, 2)["error"]["exitCode"]);
}

} // namespace
} // namespace brevint::test
