#include "tests/platform/Exchange.h"
#include "tests/support/Environment.h"
#include "tests/support/ScriptedServer.h"
#include "tests/support/TempFolder.h"
#include "tests/support/linux/TlsFront.h"

#include <gtest/gtest.h>

#include <fstream>
#include <optional>
#include <string>

namespace brevint::test {
namespace {

/// Makes this process trust a front's certificate, as long as it lives.
class Trust {
public:
    explicit Trust(const TlsFront& front) {
        const auto file = m_folder.Folder() / "certificate.pem";
        std::ofstream(file) << front.CertificateText();
        SetVariable("SSL_CERT_FILE", file);
    }
    ~Trust() { ClearVariable("SSL_CERT_FILE"); }
    Trust(const Trust&) = delete;
    Trust& operator=(const Trust&) = delete;

private:
    TempFolder m_folder;
};

TEST(Tls, SendsNothingWhereTheCertificateIsNotGood) {
    const struct {
        const char* name;
        TlsFront::Certificate certificate;
        bool trusted;
        DWORD error;
    } cases[] = {
        {"unknown", TlsFront::Certificate::good, false, ERROR_INTERNET_INVALID_CA},
        {"expired", TlsFront::Certificate::expired, true, ERROR_INTERNET_SEC_CERT_DATE_INVALID},
        {"misnamed", TlsFront::Certificate::misnamed, true, ERROR_INTERNET_SEC_CERT_CN_INVALID},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.name);
        ScriptedServer server;
        const TlsFront front(server.Port(), test.certificate);
        std::optional<Trust> trust;
        if (test.trusted) {
            trust.emplace(front);
        }
        Exchange exchange(front.Url("/"), {.verb = L"POST", .body = "credentials"});
        EXPECT_FALSE(exchange.Send());
        EXPECT_EQ(exchange.SendError(), test.error);
        EXPECT_TRUE(server.Requests().empty());
    }
}

// A redirect may lead into TLS, but not out of it.
TEST(Tls, ReachesATrustedServerAndIsNotLeftByARedirect) {
    ScriptedServer server;
    const TlsFront front(server.Port());
    const Trust trust(front);
    const auto to = front.Url("/to");
    const auto plain = server.Url("/plain", "localhost");
    server.On("/in").Reply(302, {{"Location", std::string(to.begin(), to.end())}});
    server.On("/out").Reply(302, {{"Location", std::string(plain.begin(), plain.end())}});
    server.On("/to").Reply(200, {}, "private");
    const auto body = ScriptedServer::Pattern(200000);
    for (const auto& url : {to, to, server.Url("/in")}) {
        Exchange exchange(url, {.verb = L"POST", .body = body});
        ASSERT_TRUE(exchange.Send());
        EXPECT_EQ(exchange.ReadAll(), "private");
    }
    EXPECT_TRUE(server.Requests().at(1).body == body);
    EXPECT_EQ(server.ConnectionCount(), 2u);

    Exchange out(front.Url("/out"));
    EXPECT_FALSE(out.Send());
    EXPECT_EQ(out.SendError(), ERROR_INTERNET_HTTPS_TO_HTTP_ON_REDIR);
    EXPECT_TRUE(server.RequestsFor("/plain").empty());
}

} // namespace
} // namespace brevint::test
