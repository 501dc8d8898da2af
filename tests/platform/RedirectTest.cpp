#include "tests/platform/Exchange.h"
#include "tests/platform/Target.h"
#include "tests/support/ScriptedServer.h"

#include <gtest/gtest.h>

namespace brevint::test {
namespace {

TEST(Redirect, IsFollowedByStatusAndVerb) {
    const struct {
        int status;
        const wchar_t* verb;
        std::string followedWith; ///< empty: not followed
    } cases[] = {
        {301, L"GET", "GET"},
        {302, L"GET", "GET"},
        {307, L"GET", "GET"},
        {301, L"POST", "GET"},
        {302, L"POST", "GET"},
        {303, L"POST", "GET"},
        {302, L"PUT", "GET"},
        {302, L"HEAD", "HEAD"},
        {307, L"POST", "POST"},
        {300, L"GET", ""},
        {308, L"POST", target::kFollows308 ? "POST" : ""},
    };
    for (const bool leavesOrigin : {false, true}) {
        for (const auto& test : cases) {
            SCOPED_TRACE(std::to_string(test.status) + (leavesOrigin ? ", to another origin" : ""));
            SCOPED_TRACE(test.verb);
            ScriptedServer server;
            ScriptedServer other;
            ScriptedServer& place = leavesOrigin ? other : server;
            server.On("/from").Reply(test.status, {{"Location", Narrow(place.Url("/to"))}});
            place.On("/to").Reply(200);
            const std::string body = test.followedWith == "HEAD" ? "" : "body";
            Exchange exchange(server.Url("/from"),
                              {.verb = test.verb,
                               .headers = L"Content-Type: text/plain\r\nX-Mine: 1\r\n",
                               .body = body});
            const bool follows = !test.followedWith.empty();
            const bool keepsBody = test.status >= 307 && target::kBodyTravelsWith307;
            // A body may hold a password: it goes to no other origin.
            const bool refused = leavesOrigin && follows && keepsBody;
            ASSERT_EQ(exchange.Send(), !refused);
            const auto followed = place.RequestsFor("/to");
            ASSERT_EQ(followed.size(), follows && !refused ? 1u : 0u);
            EXPECT_EQ(exchange.Status(), followed.empty() ? static_cast<DWORD>(test.status) : 200u);
            if (!followed.empty()) {
                EXPECT_EQ(followed[0].method, test.followedWith);
                EXPECT_EQ(followed[0].Header("X-Mine"), "1");
                // Where the body stays behind, so does what tells of it.
                EXPECT_EQ(followed[0].body, keepsBody ? body : "");
                for (const auto* name : {"Content-Length", "Content-Type"}) {
                    EXPECT_TRUE(keepsBody || body.empty() || followed[0].HeaderCount(name) == 0);
                }
            }
        }
    }
}

TEST(Redirect, UnderstandsEveryFormOfLocation) {
    ScriptedServer other;
    other.On("*").Reply(200, {}, "other");
    const auto otherTo = Narrow(other.Url("/to"));
    const struct {
        std::string location;
        std::string target;
        std::string body = "same";
    } cases[] = {
        {"/to", "/to"},
        {"../to", "/to"},
        {"to?q=1&r=/x", "/dir/to?q=1&r=/x"},
        {"/a b?c d", "/a%20b?c%20d"},
        {"/a\\b", "/a/b"},
        {"/to#part", target::kFragmentIsSent ? "/to#part" : "/to"},
        {otherTo, "/to", "other"},
        {otherTo.substr(otherTo.find("//")), "/to", "other"},
        {Narrow(other.Url("\\to")), "/to", "other"},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.location);
        ScriptedServer server;
        server.On("/dir/from").Reply(302, {{"Location", test.location}});
        server.On("*").Reply(200, {}, "same");
        Exchange exchange(server.Url("/dir/from"));
        ASSERT_TRUE(exchange.Send());
        EXPECT_EQ(exchange.ReadAll(), test.body);
        const auto& last = test.body == "same" ? server : other;
        EXPECT_EQ(last.Requests().back().target, test.target);
    }
}

// The chain sets a cookie at each of its steps and then goes to another host.
TEST(Redirect, CookiesTravelOnWithinTheirHost) {
    ScriptedServer server;
    server.On("/0").Reply(302, {{"Location", "/1"}, {"Set-Cookie", "redirect0=a; Path=/"}});
    server.On("/1").Reply(302, {{"Location", "/2"}, {"Set-Cookie", "redirect1=b; Path=/"}});
    server.On("/2").Reply(302, {{"Location", Narrow(server.Url("/3", "localhost"))}});
    server.On("/3").Reply(200, {}, "end");
    Exchange exchange(server.Url("/0"));
    ASSERT_TRUE(exchange.Send());
    const auto requests = server.Requests();
    ASSERT_EQ(requests.size(), 4u);
    const auto carries = [&requests](std::size_t request, const char* cookie) {
        return requests[request].Header("Cookie").find(cookie) != std::string::npos;
    };
    EXPECT_TRUE(carries(2, "redirect0=a"));
    EXPECT_TRUE(carries(2, "redirect1=b"));
    EXPECT_EQ(carries(3, "redirect0=a"), !target::kRedirectKeepsCookiesOfHost);
}

} // namespace
} // namespace brevint::test
