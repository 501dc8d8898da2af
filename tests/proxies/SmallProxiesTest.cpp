#include "brevint/brevint.h"
#include "tests/library/Helpers.h"
#include "tests/proxies/ConnectionFailure.h"
#include "tests/support/ResponseKinds.h"
#include "tests/support/ScriptedServer.h"

#include <gtest/gtest.h>

#include <memory>

namespace brevint::test {
namespace {

IReadOnlyResponse* Identity(IRequestFactory& factory, const std::wstring& url) {
    return CIdentityProxy(&factory).GetIdentity(url);
}

IReadOnlyResponse* SignOut(IRequestFactory& factory, const std::wstring& url) {
    return CSignOutProxy(&factory).SignOut(url);
}

IReadOnlyResponse* Templates(IRequestFactory& factory, const std::wstring& url) {
    return CTemplateProxy(&factory).GetTemplates(url.c_str(), L"t 1");
}

IReadOnlyResponse* Versions(IRequestFactory& factory, const std::wstring& url) {
    return CVersionProxy(&factory).GetVersionInfo(url.c_str());
}

TEST(SmallProxies, CallsOnTheWireAndTheirReplies) {
    const char* const identity = "/app/application/identity";
    const char* const whole = "<IdentifyingPartyUri>http://p</IdentifyingPartyUri>"
                              "<Name>Zo\xC3\xAB</Name><IsAdmin>True</IsAdmin>";
    const char* const types = "/app/Analysis/Types?source=templates&key=t%201";
    const char* const versions = "/app/Application/Versions";
    const struct {
        const char* kind;
        IReadOnlyResponse* (*call)(IRequestFactory&, const std::wstring&);
        const char* target;
        int status; ///< 0: the connection ends without a reply
        const char* content;
        Reading reading;
        const char* accepted = "text/xml";
    } cases[] = {
        {"Identity", Identity, identity, 200, whole, {1101, L"1|Zo\u00EB|http://p"}},
        {"Identity", Identity, identity, 403, whole, {1101, L"1|Zo\u00EB|http://p"}},
        {"Identity", Identity, identity, 0, "", {1104, L"0||"}},
        {"SignOut", SignOut, "/app/SignOut", 200, "", {1101, L"out"}, "text/html"},
        {"SignOut", SignOut, "/app/SignOut", 500, "", {1101, L"in"}, "text/html"},
        {"Template",
         Templates,
         types,
         200,
         "<Item><Name>a &amp;amp; b</Name></Item><Item/>",
         {1101, L"a & b||||||;||||||;"}},
        {"Template", Templates, types, 0, "", {1102, L""}},
        {"VersionInfo",
         Versions,
         versions,
         200,
         "<Version>7</Version><Client><Version>8.1</Version><Version/></Client>",
         {1101, L"7|8.1|"}},
        {"VersionInfo", Versions, versions, 0, "", {1102, L""}},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.target);
        ScriptedServer server;
        const std::wstring url = server.Url("/app");
        auto& script = server.On(std::string("GET ") + test.target);
        test.status ? script.Reply(test.status, {}, Document(test.content)) : script.Close();
        WebRequestFactory factory;
        IReadOnlyResponse* const response = test.call(factory, url);
        if (const auto* user = dynamic_cast<CIdentityResponse*>(response)) {
            EXPECT_EQ(user->GetErrorMessage(), test.status == 200 ? L"" : ConnectionFailure(url));
        }
        EXPECT_EQ(Read(test.kind, response), test.reading);
        EXPECT_EQ(server.Requests().at(0).target, test.target);
        EXPECT_EQ(server.Requests().at(0).Header("Accept"), test.accepted);
        server.On(std::string("GET ") + test.target).Reply(302, {{"Location", "/elsewhere"}});
        Read(test.kind, test.call(factory, url));
        EXPECT_EQ(server.RequestsFor("/elsewhere").size(), test.call == Templates ? 0u : 1u);
    }
}

} // namespace
} // namespace brevint::test
