#include "brevint/brevint.h"
#include "tests/library/Helpers.h"
#include "tests/proxies/ConnectionFailure.h"
#include "tests/support/ScriptedServer.h"

#include <gtest/gtest.h>

#include <memory>

namespace brevint::test {
namespace {

using Headers = ScriptedServer::Headers;
using Response = std::unique_ptr<SignInResponse>;

/// Makes requests that touch no network: the first is answered with a redirect, the others with the
/// same page.
struct RedirectingRequests final : IRequestFactory {
    struct Request : WebRequest {
        explicit Request(RedirectingRequests& factory) : owner(factory) {}
        void SendRequest() override {}
        unsigned long GetRequestStatus() override {
            return owner.urls.size() == 1 ? owner.status : 200;
        }
        void GetRequestedData(std::wstring& out) override { out = owner.page; }
        void GetRedirectUrl(std::wstring& out) override { out = owner.redirect; }
        RedirectingRequests& owner;
    };
    IRequest* Create() override { return new Request(*this); }
    IRequest* Create(const wchar_t* url, WebRequestType) override {
        urls.emplace_back(url);
        return Create();
    }
    unsigned long status = 0;
    std::wstring redirect;
    std::wstring page;
    std::vector<std::wstring> urls;
};

TEST(SignIn, PortalIsAskedInTheClientsMode) {
    for (const unsigned long status : {302ul, 12168ul}) {
        for (const auto& [redirect, portal] : {
                 std::pair(L"http://p/in", L"http://p/in?mode=VX"),
                 std::pair(L"http://p/in?a=1", L"http://p/in?a=1&mode=VX"),
                 std::pair(L"http://p/in?a=1&mode=DB&b=%20", L"http://p/in?a=1&mode=VX&b=%20"),
                 std::pair(L"http://p?a=1&mode=DB&mode=DB", L"http://p?a=1&mode=VX&mode=VX"),
                 std::pair(L"http://p/in?mode=DB&a=1", L"http://p/in?mode=DB&a=1&mode=VX"),
             }) {
            RedirectingRequests requests;
            requests.status = status;
            requests.redirect = redirect;
            CSignInProxy proxy(&requests);
            const Response response(proxy.SignIn(L"http://s/", L"user", L"pass"));
            EXPECT_EQ(requests.urls, (std::vector<std::wstring>{L"http://s/", portal}));
            EXPECT_FALSE(response->GetSucceeded());
        }
    }
}

TEST(SignIn, NeverGoesFromTlsToPlainHttp) {
    const struct {
        const wchar_t* service;
        const wchar_t* portal;
        const wchar_t* action;
        std::size_t requests; ///< made before the sign-in fails
    } cases[] = {
        {L"https://s/", L"http://p/?", L"https://s/in", 1},
        {L"HTTPS://s/", L" HTTP://p/?", L"https://s/in", 1},
        {L"https://s/", L"https://p/?", L"http://s/in", 2},
        {L"http://s/", L"https://p/?", L"\thttp://s/in", 2},
        {L"http://s/", L"http://p/?", L"http://s/in", 3},
        // What is no address fails where it is sent.
        {L"https://s/", L"/portal?", L"/in", 3},
        {L"https://s/", L"https://p/?", L"in", 3},
        {L"https://s/", L"https://p/?", L"httpx://s/in", 3},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(Narrow(test.portal) + ", " + Narrow(test.action));
        RedirectingRequests requests;
        requests.status = 302;
        requests.redirect = test.portal;
        requests.page = L"<form action='" + std::wstring(test.action) + L"'><input type=hidden>";
        CSignInProxy proxy(&requests);
        const Response response(proxy.SignIn(test.service, L"user", L"pass"));
        EXPECT_EQ(requests.urls.size(), test.requests);
        EXPECT_EQ(response->GetErrorMessage(), ConnectionFailure(test.service));
    }
}

std::string PortalPage(const std::wstring& action) {
    return "<!DOCTYPE html><html><body onload='document.forms[0].submit()'>"
           "<form method=POST action='" +
           Narrow(action) +
           "'><input type=hidden name=context value='a&amp;b=c'><input type=text name=seen "
           "value=no>"
           "<INPUT TYPE=HIDDEN NAME=token VALUE='&lt;t x=\"1\"/&gt; \xC3\xBC'></form>";
}

Response From(const std::wstring& url) {
    WebRequestFactory factory;
    CSignInProxy proxy(&factory);
    return Response(proxy.SignIn(url.c_str(), L"a&b=c+d e", L"p%\u00E4\u6982*-._"));
}

// The jar is the process's, so each flow has cookies of its own path.

TEST(SignIn, FollowsThePortalToTheCookiesOfTheService) {
    ScriptedServer server;
    server.On("/app").Reply(302, {{"Location", Narrow(server.Url("/portal?a=in&mode=DB&x=1"))}});
    server.On("POST /portal").Reply(302, {{"Location", Narrow(server.Url("/page"))}});
    server.On("/page").Reply(200, {}, PortalPage(server.Url("/whole/in")));
    server.On("POST /whole/in")
        .Reply(302, {{"Location", "/home"},
                     {"Set-Cookie", "other=o; Path=/whole"},
                     {"Set-Cookie", "FedAuth=a; Path=/whole"},
                     {"Set-Cookie", "FedAuth1=b; Path=/whole"}});
    server.On("/home").Reply(200);
    const auto response = From(server.Url("/app"));
    EXPECT_TRUE(response->GetSucceeded());
    EXPECT_STREQ(response->GetCookie(), L"other=o; FedAuth=a; FedAuth1=b");
    const auto requests = server.Requests();
    ASSERT_EQ(requests.size(), 5u);
    EXPECT_EQ(requests[0].Header("Accept"), "text/html");
    EXPECT_EQ(requests[1].method + ' ' + requests[1].target, "POST /portal?a=in&mode=VX&x=1");
    EXPECT_EQ(requests[1].Header("Accept"), "text/xml");
    EXPECT_EQ(requests[1].Header("Content-Type"), "application/x-www-form-urlencoded");
    EXPECT_EQ(requests[1].body, "userName=a%26b%3Dc%2Bd+e&password=p%25%C3%A4%E6%A6%82*-._");
    EXPECT_EQ(requests[3].body, "context=a%26b%3Dc&token=%3Ct+x%3D%221%22%2F%3E+%C3%BC&");
}

/// A page with all that portals show around their form, and what looks like another one in it.
std::string LadenPage(const std::string& form, const std::string& other) {
    std::string page = "<!doctype html><html lang=en><head><meta charset=utf-8>"
                       "<title>a < b " +
                       other + "</title><style>" +
                       Repeat(3'000, "a > b { content: '</p><c>'; }\n") + "</style>";
    for (const std::string text : {"s += '<a href=\"' + x + '\"></a><\\/script>';\n",
                                   "if (a < b && c<d || e </f.g/.h) { i <<= j; } // it's <b\n",
                                   "{\"k\": [\"</div>\", \"<!-- \", {\"l\": \"<m n='\"}]},\n"}) {
        page += "<script>" + Repeat(2'000, text) + "</script>";
    }
    page += "</head><body class='a b'><!-- <!-- " + other + " <a b='> -->" +
            Repeat(800, "<svg viewBox='0 0 9 9'><title>t</title><path d='M0 0L9 9'/></svg>") +
            Repeat(600, "<p>1 < 2 && 3<4 a<b <c d&nbsp;e &copy; <x-y z>&hellip;</x-y>\n");
    for (const std::string name :
         {"template", "textarea", "iframe", "noframes", "noembed", "xmp"}) {
        page += '<' + name + "><tr><td>" + other + "<div></" + name + '>';
    }
    return page + "<img alt='' src='data:image/png;base64," + Repeat(77'000, "iVBORw0KGgo/+") +
           "'>" + form + "</body></html>";
}

TEST(SignIn, ReadsALadenPage) {
    ScriptedServer server;
    const std::string value(1'000'000, 'v');
    const std::string form = "<form method=post action='" + Narrow(server.Url("/laden/in")) +
                             "'><input type=hidden name=n value='" + value + "'></form>";
    const std::string other = "<form action='" + Narrow(server.Url("/laden/other")) +
                              "'><input type=hidden name=other></form>";
    server.On("/app").Reply(302, {{"Location", Narrow(server.Url("/portal"))}});
    server.On("/portal?mode=VX").Reply(200, {}, LadenPage(form, other));
    server.On("/laden/in")
        .Reply(200, {{"Set-Cookie", "FedAuth=a; Path=/laden"},
                     {"Set-Cookie", "FedAuth1=b; Path=/laden"}});
    EXPECT_STREQ(From(server.Url("/app"))->GetErrorMessage(), L"");
    EXPECT_TRUE(server.Requests().back().body == "n=" + value + "&");
}

TEST(SignIn, FailuresSayWhy) {
    const std::string form = "<form action='http://s/finish'>";
    const std::string hidden = "<input type=hidden name=a value=b>";
    const std::string locked = "<failureMessage>Locked.</failureMessage>";
    const wchar_t* const noReason = L"Failed to find expected error";
    struct Case {
        const char* name;
        std::size_t step; ///< the one that fails
        int status;
        Headers headers;
        std::string body;
        const wchar_t* message; ///< null: the connection failure
    };
    const Case cases[] = {
        {"session is there", 1, 200, {}, "<html/>", L"Already signed in."},
        {"not found", 1, 404, {}, "<html/>", nullptr},
        {"portal fails", 2, 500, {}, "<html/>", nullptr},
        {"refused",
         2,
         200,
         {},
         "<p>no" + locked + "<failureMessage>2</failureMessage>",
         L"Locked."},
        {"no form", 2, 200, {}, "<html><body>" + hidden + "</body></html>", noReason},
        {"no hidden field", 2, 200, {}, form + "<input type=text name=a value=b></form>", noReason},
        {"no field, but a reason", 2, 200, {}, form + "</form>" + locked, L"Locked."},
        {"empty page", 2, 200, {}, "", noReason},
        {"service fails", 3, 500, {}, "<html/>", nullptr},
        {"no cookie", 3, 200, {}, "<html/>", nullptr},
        {"one cookie", 3, 200, {{"Set-Cookie", "FedAuth=a; Path=/finish"}}, "", nullptr},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.name);
        ScriptedServer server;
        const char* const targets[] = {"/app", "/portal?mode=VX", "/finish"};
        if (test.step > 1) {
            server.On("/app").Reply(302, {{"Location", Narrow(server.Url("/portal"))}});
        }
        if (test.step > 2) {
            server.On("/portal").Reply(200, {}, PortalPage(server.Url("/finish")));
        }
        server.On(targets[test.step - 1]).Reply(test.status, test.headers, test.body);
        const auto response = From(server.Url("/app"));
        EXPECT_FALSE(response->GetSucceeded());
        EXPECT_STREQ(response->GetCookie(), L"");
        EXPECT_EQ(response->GetErrorMessage(),
                  test.message ? test.message : ConnectionFailure(server.Url("/app")));
        EXPECT_EQ(server.Requests().back().target, targets[test.step - 1]) << "the flow ends here";
    }
}

} // namespace
} // namespace brevint::test
