#include "brevint/brevint.h"
#include "tests/library/Details.h"
#include "tests/library/Helpers.h"
#include "tests/proxies/ConnectionFailure.h"
#include "tests/support/ScriptedServer.h"

#include <gtest/gtest.h>

#include <memory>

namespace brevint::test {
namespace {

/// Code and detail, as a caller reads them.
using Result = std::pair<double, std::wstring>;

Result Identity(IRequestFactory& factory, const std::wstring& url) {
    CIdentityProxy proxy(&factory);
    const std::unique_ptr<CIdentityResponse> response(proxy.GetIdentity(url));
    return {response->GetErrorCode(),
            std::wstring(response->GetUsername()) + L'|' + response->GetErrorMessage()};
}

Result SignOut(IRequestFactory& factory, const std::wstring& url) {
    CSignOutProxy proxy(&factory);
    const std::unique_ptr<CSignOutResponse> response(proxy.SignOut(url));
    return {response->GetErrorCode(), Detail(*response)};
}

Result Templates(IRequestFactory& factory, const std::wstring& url) {
    CTemplateProxy proxy(&factory);
    const std::unique_ptr<CTemplateResponse> response(proxy.GetTemplates(url.c_str(), L"t 1"));
    return {response->GetErrorCode(), Detail(*response)};
}

Result Versions(IRequestFactory& factory, const std::wstring& url) {
    CVersionProxy proxy(&factory);
    const std::unique_ptr<CVersionInfoResponse> response(proxy.GetVersionInfo(url.c_str()));
    return {response->GetErrorCode(), Detail(*response)};
}

TEST(SmallProxies, CallsOnTheWireAndTheirReplies) {
    const char* const identity = "/app/application/identity";
    const char* const whole = "<IdentifyingPartyUri>http://p</IdentifyingPartyUri>"
                              "<Name>Zo\xC3\xAB</Name><IsAdmin>True</IsAdmin>";
    const char* const types = "/app/Analysis/Types?source=templates&key=t%201";
    const char* const versions = "/app/Application/Versions";
    struct Case {
        Result (*call)(IRequestFactory&, const std::wstring&);
        const char* target;
        int status; ///< 0: the connection ends without a reply
        const char* content;
        double code;
        std::wstring detail;
    };
    for (const auto& test : {
             Case{Identity, identity, 200, whole, 1101, L"Zo\u00EB|"},
             Case{Identity, identity, 403, whole, 1101, L"Zo\u00EB|"},
             Case{Identity, identity, 0, "", 1104, L"|"},
             Case{SignOut, "/app/SignOut", 200, "", 1101, L"out"},
             Case{SignOut, "/app/SignOut", 500, "", 1101, L"in"},
             Case{Templates, types, 200, "<Item><Name>a &amp;amp; b</Name></Item><Item/>", 1101,
                  L"a & b||||||;||||||;"},
             Case{Templates, types, 0, "", 1102, L""},
             Case{Versions, versions, 200,
                  "<Version>7</Version><Client><Version>8.1</Version><Version/></Client>", 1101,
                  L"7|8.1|"},
             Case{Versions, versions, 0, "", 1102, L""},
         }) {
        SCOPED_TRACE(test.target);
        ScriptedServer server;
        auto& script = server.On(std::string("GET ") + test.target);
        test.status ? script.Reply(test.status, {}, Document(test.content)) : script.Close();
        WebRequestFactory factory;
        const auto [code, detail] = test.call(factory, server.Url("/app"));
        EXPECT_EQ(code, test.code);
        const bool tellsFailure = test.call == Identity && test.status != 200;
        EXPECT_EQ(detail,
                  test.detail + (tellsFailure ? ConnectionFailure(server.Url("/app")) : L""));
        EXPECT_EQ(server.Requests().at(0).target, test.target);
        EXPECT_EQ(server.Requests().at(0).Header("Accept"),
                  test.call == SignOut ? "text/html" : "text/xml");
        server.On(std::string("GET ") + test.target).Reply(302, {{"Location", "/elsewhere"}});
        test.call(factory, server.Url("/app"));
        EXPECT_EQ(server.RequestsFor("/elsewhere").size(), test.call == Templates ? 0u : 1u);
    }
}

} // namespace
} // namespace brevint::test
