#include "tests/platform/Exchange.h"
#include "tests/support/ScriptedServer.h"
#include "tests/tls/Trust.h"

#include "brevint/ErrorCodes.h"
#include "brevint/PathResponse.h"
#include "brevint/RepositoryProxy.h"
#include "brevint/WebRequestFactory.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <memory>
#include <string>

namespace brevint::test {
namespace {

/// A scripted server behind the TLS fronts that this program is run with.
struct Tls : testing::Test {
    Tls() { std::ofstream(folder / "port") << server.Port(); }

    std::filesystem::path Certificate(const std::string& front) const {
        return folder / (front + ".pem");
    }
    std::string Url(const std::string& target, const std::string& front = "good") const {
        std::string port;
        std::ifstream(folder / (front + ".port")) >> port;
        return "https://localhost:" + port + target;
    }
    std::string PlainUrl(const std::string& target) const {
        const auto url = server.Url(target, "localhost");
        return {url.begin(), url.end()};
    }
    static std::wstring Wide(const std::string& ascii) { return {ascii.begin(), ascii.end()}; }

    /// The code of a call to the service behind that front, which answers it.
    double CallCode(const std::string& front = "good") {
        server.On("/Repository/Items/id/Path")
            .Reply(200, {}, "<ResponseData><Path>/</Path></ResponseData>");
        WebRequestFactory factory;
        return std::unique_ptr<CPathResponse>(
                   CRepositoryProxy(&factory).GetPath(Wide(Url("", front)), L"id"))
            ->GetErrorCode();
    }

    /// Checks that nothing is sent to what is behind that front.
    void ExpectRefused(const std::string& front, DWORD error) {
        Exchange exchange(Wide(Url("/", front)), {.verb = L"POST", .body = "credentials"});
        EXPECT_FALSE(exchange.Send());
        EXPECT_EQ(exchange.SendError(), error);
        EXPECT_EQ(exchange.Status(), 0u);
        EXPECT_EQ(exchange.ReadAll(), "");
        EXPECT_EQ(CallCode(front), ErrorCode::EmptyReply);
        EXPECT_TRUE(server.Requests().empty());
    }

    const std::filesystem::path folder = std::getenv("BREVINT_TLS");
    ScriptedServer server;
};

// Each has a process of its own, in which it trusts what it trusts from the beginning.

TEST_F(Tls, IsRefusedWithoutTrust) {
    ExpectRefused("good", ERROR_INTERNET_INVALID_CA);
}

TEST_F(Tls, IsRefusedAfterItsTime) {
    const Trust trust(Certificate("expired"));
    ExpectRefused("expired", ERROR_INTERNET_SEC_CERT_DATE_INVALID);
}

TEST_F(Tls, IsRefusedUnderAnotherName) {
    const Trust trust(Certificate("misnamed"));
    ExpectRefused("misnamed", ERROR_INTERNET_SEC_CERT_CN_INVALID);
}

TEST_F(Tls, IsTrustedAsLongAsItsCertificate) {
    {
        const Trust trust(Certificate("good"));
        EXPECT_EQ(CallCode(), 1101);
    }
    EXPECT_EQ(CallCode(), target::kTrustEndsAtOnce ? 1102 : 1101);
}

TEST_F(Tls, ReachesATrustedServerAndIsNotLeftByARedirect) {
    const Trust trust(Certificate("good"));
    server.On("/in").Reply(302, {{"Location", Url("/to")}});
    server.On("/out").Reply(302, {{"Location", PlainUrl("/plain")}});
    server.On("/plain").Reply(200);
    server.On("/to").Reply(200, {}, "private");
    const auto body = ScriptedServer::Pattern(200000);
    for (const auto& url : {Url("/to"), Url("/to"), PlainUrl("/in")}) {
        Exchange exchange(Wide(url), {.verb = L"POST", .body = body});
        ASSERT_TRUE(exchange.Send()) << exchange.SendError();
        EXPECT_EQ(exchange.ReadAll(), "private");
    }
    const auto requests = server.RequestsFor("/to");
    ASSERT_EQ(requests.size(), 3u);
    EXPECT_TRUE(requests[1].body == body);
    EXPECT_EQ(requests[1].connection, requests[0].connection);

    Exchange out(Wide(Url("/out")));
    EXPECT_EQ(out.Send(), target::kRedirectsLeaveTls);
    EXPECT_EQ(server.RequestsFor("/plain").size(), target::kRedirectsLeaveTls ? 1u : 0u);
}

} // namespace
} // namespace brevint::test
