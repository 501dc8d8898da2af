// Signing in and out, and what is kept in between.

#include "cli/session/PrivateFile.h"
#include "cli/session/Session.h"
#include "tests/cli/ClientFixture.h"
#include "tests/support/RefusedPort.h"
#include "tests/support/ScriptedServer.h"

#include <future>

namespace brevint::test {
namespace {

TEST_F(ClientServiceTest, KeepsASessionThatIsTheUsersAlone) {
    const auto refused = SignIn("ada", "ada\n");
    EXPECT_EQ(3, refused.exitCode);
    EXPECT_NE(std::string::npos, refused.error.find("The user name or password is incorrect."));
    EXPECT_FALSE(std::filesystem::exists(SessionFile()));

    const auto result = SignIn("ada", "ada-secret\nnot the password\n");
    EXPECT_EQ(0, result.exitCode) << result.error;
    const std::string session = cli::ReadPrivateFile(SessionFile()).value();
    EXPECT_NE(std::string::npos, session.find("FedAuth1="));
    EXPECT_EQ(std::string::npos, (session + result.output + result.error).find("ada-secret"));
    EXPECT_EQ((nlohmann::json{{"user", "ada"},
                              {"role", "administrator"},
                              {"url", m_service.Url().substr(0, m_service.Url().size() - 1)},
                              {"portal", m_service.Url() + "portal/login"}}),
              RunJson({"whoami"}));
}

TEST_F(ClientServiceTest, TakesTheCookiesToNoOtherAddress) {
    ASSERT_EQ(0, SignIn().exitCode);
    ScriptedServer other;
    Run({"ls", "/Projects", "--url", Narrow(other.Url(""))});
    ASSERT_EQ(1U, other.Requests().size());
    EXPECT_EQ(0U, other.Requests().front().HeaderCount("Cookie"));
    EXPECT_EQ(0, Run({"ls", "/Projects", "--url", m_service.Url()}).exitCode);
}

TEST_F(ClientServiceTest, IsOverAfterSignOut) {
    ASSERT_EQ(0, SignIn("ben", "ben-secret\n").exitCode);
    const std::string session = ReadFile(SessionFile());
    EXPECT_EQ(0, Run({"sign-out"}).exitCode);
    EXPECT_FALSE(std::filesystem::exists(SessionFile()));
    EXPECT_EQ(3, Run({"ls"}).exitCode);

    // The service has forgotten it too, which a second sign-out does not mind.
    cli::CreatePrivateFile(SessionFile(), session);
    EXPECT_EQ(3, Run({"ls", "/Projects"}).exitCode);
    EXPECT_EQ(0, Run({"sign-out"}).exitCode);
    EXPECT_EQ(3, Run({"sign-out"}).exitCode);
}

TEST_F(ClientServiceTest, RefusesASessionThatIsDamagedOrOpenToOthers) {
    ASSERT_EQ(0, SignIn().exitCode);
    std::filesystem::resize_file(SessionFile(), 40);
    EXPECT_EQ(5, Run({"ls"}).exitCode);
    OpenToEverybody(SessionFile());
    EXPECT_NE(std::string::npos, Run({"ls"}).error.find("session.json\" is not a file"));
    ASSERT_EQ(0, SignIn().exitCode);
    EXPECT_EQ(0, Run({"ls"}).exitCode);
    OpenToEverybody(SessionFile().parent_path());
    for (const auto& result : {Run({"ls"}), SignIn()}) {
        EXPECT_EQ(5, result.exitCode);
        EXPECT_NE(std::string::npos, result.error.find("nobody else may write to"));
    }
}

// One program replaces the session while the other reads it.
TEST_F(ClientTest, ReadsTheSessionWhole) {
    const std::string cookies(50'000, 'c');
    const auto replace = [&] {
        KeepSession("https://host", cookies);
    };
    replace();
    const auto writer = std::async(std::launch::async, [&] {
        for (int i = 0; i < 100; ++i) {
            replace();
        }
    });
    for (int i = 0; i < 100; ++i) {
        EXPECT_EQ(cookies, cli::LoadSession().value().cookies);
    }
    writer.wait();
}

TEST_F(ClientTest, WithoutAServiceSaysSo) {
    const RefusedPort port;
    const std::string url = "http://127.0.0.1:" + std::to_string(port.Port());
    const auto signIn = Run({"sign-in", "--url", url, "--user", "ada"}, "x\n");
    EXPECT_EQ(4, signIn.exitCode);
    EXPECT_NE(std::string::npos, signIn.error.find(url));
    KeepSession(url, "FedAuth=a; FedAuth1=b");
    for (const std::vector<std::string>& command :
         {std::vector<std::string>{"ls", "/Projects"}, {"whoami"}, {"versions"}, {"sign-out"}}) {
        const std::string message = RunJson(command, 4)["error"]["message"];
        EXPECT_NE(std::string::npos, message.find("refuses the connection")) << message;
    }
    EXPECT_FALSE(std::filesystem::exists(SessionFile()));
}

TEST_F(ClientTest, ExplainsItself) {
    const auto help = Run({"--help"});
    EXPECT_EQ(0, help.exitCode);
    EXPECT_NE(std::string::npos, help.output.find("130  interrupted"));
    EXPECT_EQ(0U, Run({"--version"}).output.find("brevint "));
    const std::vector<std::string> wrong[] = {
        {}, {"frobnicate"}, {"get"}, {"ls", "--timeout", "-1"}, {"get", "x", "-o", "y", "-d", "z"}};
    for (const auto& arguments : wrong) {
        const auto result = Run(arguments);
        EXPECT_EQ(2, result.exitCode);
        EXPECT_EQ("", result.output);
        EXPECT_NE("", result.error);
    }
    EXPECT_EQ(2, RunJson({"ls", "--frobnicate"}, 2)["error"]["exitCode"]);
}

} // namespace
} // namespace brevint::test
