// The parts of the client that need no service.

#include "brevint/DeleteResponse.h"
#include "brevint/ErrorCodes.h"
#include "brevint/SignOutResponse.h"
#include "cli/ErrorText.h"
#include "cli/Failure.h"
#include "cli/SafeName.h"
#include "cli/SafeText.h"
#include "cli/ServiceUrl.h"
#include "cli/Session.h"
#include "cli/Verdict.h"

#include <gtest/gtest.h>

namespace brevint::cli {
namespace {

TEST(SafeFileName, RefusesWhatLeadsElsewhere) {
    using namespace std::string_literals;
    for (const std::string& path :
         {""s, "/"s, "/a/"s, "/a/."s, "/a/.."s, "/a/..\\..\\b"s, "/a/C:b"s, "/a/b:stream"s,
          "/a/b\n"s, "/a/\x1b[2J"s, "/a/b\0c"s, "/a/b\x7f"s, "/a/b."s, "/a/b "s, "/a/nul"s,
          "/a/NUL.txt"s, "/a/Com1"s, "/a/lpt9 .x"s, "/a/what?"s}) {
        EXPECT_EQ(std::nullopt, SafeFileName(path)) << path;
    }
}

TEST(Neutralise, LeavesNothingThatSteersATerminal) {
    EXPECT_EQ("Grüße 概要 📷", Neutralise("Grüße 概要 📷"));
    EXPECT_EQ("\uFFFD[31mred\uFFFD\uFFFD\uFFFD", Neutralise("\x1b[31mred\r\n\t"));
    EXPECT_EQ("a\uFFFDb\uFFFDc\uFFFDd", Neutralise("a\u009Bb\u202Ec\x7f"
                                                   "d"));
    EXPECT_EQ("a\uFFFDb", Neutralise("a\xFF"
                                     "b"));
}

TEST(ServiceUrl, AcceptsAddressesOfServices) {
    const std::pair<const char*, const char*> cases[] = {
        {"https://host", "https://host"},
        {"HTTPS://host:8443/app//", "HTTPS://host:8443/app"},
        {"http://localhost/app/", "http://localhost/app"},
        {"http://127.0.0.1:1", "http://127.0.0.1:1"},
        {"http://127.255.0.9", "http://127.255.0.9"},
        {"http://[::1]:65535/", "http://[::1]:65535"},
    };
    for (const auto& [given, used] : cases) {
        EXPECT_EQ(used, CheckServiceUrl(given, false));
    }
    EXPECT_EQ("http://host", CheckServiceUrl("http://host/", true));
}

TEST(ServiceUrl, RefusesTheRest) {
    constexpr const char* kRefused[] = {"",
                                        "host",
                                        "ftp://host",
                                        "https:///app",
                                        "http://host",
                                        "http://127.0.0.1@host",
                                        "https://host?x",
                                        "https://host:65536",
                                        "http://127.0.0.1.host",
                                        "http://[::2]"};
    for (const char* url : kRefused) {
        try {
            CheckServiceUrl(url, false);
            ADD_FAILURE() << url;
        } catch (const Failure& failure) {
            EXPECT_EQ(ExitCode::Usage, failure.exitCode) << url;
        }
    }
}

TEST(Session, IsNothingElse) {
    for (const char* text :
         {"", "{", "[]", "7", R"({"url":"u","user":"n"})", R"({"url":"u","user":"n","cookies":7})",
          R"({"url":"u","user":"n","cookies":"c"} x)"}) {
        EXPECT_FALSE(ParseSession(text)) << text;
    }
}

template <class Response>
std::optional<Failure> Judge(unsigned long status, std::string_view body) {
    Response response;
    response.SetServerResponse({body.begin(), body.end()}, status);
    try {
        RequireSuccess(&response, "It failed.");
        return std::nullopt;
    } catch (const Failure& failure) {
        return failure;
    }
}

TEST(Verdict, IsTheServicesAnswerAndNothingElse) {
    struct Case {
        unsigned long status;
        const char* body;
        ExitCode exitCode;
        double code;
    };
    constexpr const char* unknown = "<ResponseData><Message>Odd.</Message></ResponseData>";
    constexpr const char* refused =
        "<ResponseData><Message>Authorization failed.</Message></ResponseData>";
    const Case cases[] = {
        {200, "<ResponseData/>", ExitCode::Success, ErrorCode::Success},
        {0, "", ExitCode::NoConnection, ErrorCode::EmptyReply},
        {200, "", ExitCode::NoConnection, ErrorCode::EmptyReply},
        {500, "", ExitCode::Refused, ErrorCode::EmptyReply},
        {500, "<html/>", ExitCode::Refused, ErrorCode::MessageNotRecognised},
        {200, "<html>", ExitCode::Refused, ErrorCode::ReplyNotXml},
        {302, "<html/>", ExitCode::NotAuthorised, ErrorCode::AuthorizationFailed},
        {302, "", ExitCode::NotAuthorised, ErrorCode::AuthorizationFailed},
        {401, "<html>", ExitCode::NotAuthorised, ErrorCode::AuthorizationFailed},
        {403, refused, ExitCode::NotAuthorised, ErrorCode::AuthorizationFailed},
        {403, unknown, ExitCode::Refused, ErrorCode::MessageNotRecognised},
    };
    for (const Case& c : cases) {
        const auto failure = Judge<CDeleteResponse>(c.status, c.body);
        if (c.exitCode == ExitCode::Success) {
            EXPECT_FALSE(failure);
            continue;
        }
        ASSERT_TRUE(failure) << c.status << c.body;
        EXPECT_EQ(c.exitCode, failure->exitCode) << c.status << c.body;
        EXPECT_EQ(c.code, failure->code) << c.status << c.body;
        EXPECT_EQ(FindErrorText(c.code).name, failure->codeName);
    }
    EXPECT_EQ("Odd.", Judge<CDeleteResponse>(403, unknown)->serverWords);
    // The response of a sign-out calls itself a success in any case.
    EXPECT_EQ(ExitCode::NoConnection, Judge<CSignOutResponse>(0, "")->exitCode);
    EXPECT_FALSE(Judge<CSignOutResponse>(200, ""));
}

} // namespace
} // namespace brevint::cli
