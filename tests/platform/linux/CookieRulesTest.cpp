#include "platform/linux/WinInet.h"
#include "platform/linux/cookies/CookieJar.h"
#include "platform/linux/urls/Url.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

// The rules of RFC 6265 beyond those that WinINet follows too.

namespace brevint::test {
namespace {

using platform::CookieJar;

platform::CookieScope Scope(const std::string& url) {
    return platform::CookieScope::Of(platform::Url(url));
}

std::wstring Wide(const std::string& ascii) {
    return {ascii.begin(), ascii.end()};
}

// Each row sets cookies in a jar of its own, as replies do and as the application does; what the
// jar sends and what it lists must be the same.
TEST(CookieRules, DecideAlikeWhoeverSetsAndWhoeverAsks) {
    const struct {
        std::vector<std::string> set; ///< at the page
        std::string sent;
        std::string askedAt = "http://home.example.org/a/b/other";
        std::string page = "http://home.example.org/a/b/page";
    } cases[] = {
        // names and values
        {{" n  = v w ;x"}, "n=v w"},
        {{"n=v\tw", "m=\"q;r\""}, "n=v\tw; m=\"q"},
        {{"n=", "m=a=b", "\xC3\xA9=\xE6\xA6\x82"}, "n=; m=a=b; \xC3\xA9=\xE6\xA6\x82"},
        {{"n", "=v", "=", "", ";n=v", "n\x01=v", "n=v\x7Fw", "n=\xE9"}, ""},
        {{"N=1", "n=2", "N=3"}, "N=3; n=2"},
        // paths
        {{"n=v; Path=/a"}, "n=v", "http://home.example.org/a"},
        {{"n=v; Path=/a"}, "", "http://home.example.org/ab"},
        {{"n=v; Path=/a/"}, "", "http://home.example.org/a"},
        {{"n=v; PATH = /a"}, "n=v", "http://home.example.org/a/../a?q"},
        {{"n=v; Path=foo"}, "n=v"},
        {{"n=v; Path=\"/\""}, "", "http://home.example.org/"},
        {{"n=v; Path=/\""}, "", "http://home.example.org/"},
        {{"n=v; Path=/; Path"}, "", "http://home.example.org/"},
        {{"n=v; Path=/x; Path=/"}, "n=v", "http://home.example.org"},
        {{"n=1; Path=/", "n=2", "m=3; Path=/", "n=4; Path=/"}, "n=2; n=4; m=3"},
        // domains
        {{"n=v"}, "", "http://x.home.example.org/a/b/"},
        {{"n=v; Domain=.EXAMPLE.org; Path=/"}, "n=v", "http://x.example.org/"},
        {{"n=v; Domain=home.example.org; Path=/"}, "n=v", "http://X.Home.example.org:81/"},
        {{"n=v; Domain=example.org; Path=/"}, "", "http://otherexample.org/"},
        {{"n=v; Domain=org", "n=v; Domain=..example.org", "n=v; Domain=x.home.example.org",
          "n=v; Domain=ample.org", "n=v; Domain=example.org."},
         ""},
        {{"n=v; Domain=example.com; Domain=example.org"}, "n=v"},
        {{"n=v; Domain=; Domain"}, "n=v"},
        {{"n=v; Domain=127.0.0.1"}, "n=v", "http://127.0.0.1/", "http://127.0.0.1/"},
        {{"n=v; Domain=127.0.0.1"}, "", "http://below.127.0.0.1/", "http://127.0.0.1/"},
        {{"n=v; Domain=0.0.1"}, "", "http://127.0.0.1/", "http://127.0.0.1/"},
        {{"n=v; Domain=::1"}, "n=v", "http://[::1]/", "http://[::1]/"},
        {{"n=v; Domain=localhost"}, "n=v", "http://localhost/", "http://localhost/"},
        {{"n=v; Domain=localhost"}, "", "http://a.localhost/", "http://a.localhost/"},
        {{"n=v; Domain=co.uk"}, "n=v", "http://co.uk/", "http://co.uk/"},
        {{"n=v; Domain=co.uk"}, "", "http://a.co.uk/", "http://co.uk/"},
        {{"n=v; Domain=.co.uk"}, "", "http://a.co.uk/", "http://a.co.uk/"},
        // ends
        {{"n=v; Max-Age=9", "m=v; Max-Age=9; Expires=Sat, 01 Jan 2000 00:00:00 GMT"}, "n=v; m=v"},
        {{"n=v; Max-Age=x; Max-Age=9x; Max-Age=+0; Expires=never"}, "n=v"},
        {{"n=v", "n=w; Max-Age=0"}, ""},
        {{"n=v", "n=w; Max-Age=-99999999999999999999"}, ""},
        {{"n=v; Max-Age=99999999999999999999"}, "n=v"},
        {{"n=v", "n=; Path=/; Max-Age=0"}, "n=v"},
        {{"n=v", "n=; expires=Sat,01-Jan-00 00:00:00 GMT"}, ""},
        {{"n=v", "n=; Expires=Thu, 01 Jan 1970 00:00:00 GMT"}, ""},
        {{"n=v", "n=; Expires=sam. 1 january 1999 0:0:0 GMT+0100 (their time)"}, ""},
        {{"n=v", "n=; Expires=1601 23:59:59 Feb 28"}, ""},
        {{"n=1; Expires=31 Feb 2000 0:0:0", "o=2; Expires=1 Jan 1600 0:0:0",
          "p=3; Expires=1 Jan 2000 24:0:0", "q=4; Expires=1 Jan 2000",
          "r=5; Expires=1 Jan 69 0:0:0"},
         "n=1; o=2; p=3; q=4; r=5"},
        // TLS
        {{"n=v; sEcure=x"}, ""},
        {{"n=v; Secure"}, "n=v", "https://home.example.org/a/b/"},
        {{"n=v; \"Secure\"; Secure x"}, "n=v"},
        {{"n=v; Secure", "n=w"}, "n=w"},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(testing::PrintToString(test.set) + test.askedAt);
        CookieJar ofReplies;
        CookieJar ofTheApplication;
        for (const auto& cookie : test.set) {
            ofReplies.Receive(Scope(test.page), cookie);
            ofTheApplication.Set(Wide(test.page), "", cookie);
        }
        for (const CookieJar* jar : {&ofReplies, &ofTheApplication}) {
            EXPECT_EQ(jar->Header(Scope(test.askedAt)), test.sent);
            std::string listed;
            EXPECT_EQ(jar->Get(Wide(test.askedAt), listed),
                      test.sent.empty() ? ERROR_NO_MORE_ITEMS : ERROR_SUCCESS);
            EXPECT_EQ(listed, test.sent);
        }
    }
}

TEST(CookieRules, WhatWasSetOverTlsForTlsIsNotReplacedWithout) {
    for (const std::string intruder :
         {"n=bad", "n=bad; Secure", "n=; Max-Age=0", "n=bad; Path=/a/b",
          "n=bad; Domain=example.org; Path=/a/b"}) {
        SCOPED_TRACE(intruder);
        CookieJar jar;
        jar.Receive(Scope("https://home.example.org/a/"), "n=good; Secure");
        jar.Receive(Scope("http://home.example.org/a/"), intruder);
        EXPECT_EQ(jar.Set(L"http://home.example.org/a/", "", intruder), ERROR_INVALID_OPERATION);
        EXPECT_EQ(jar.Header(Scope("https://home.example.org/a/b/c")), "n=good");
        jar.Receive(Scope("https://home.example.org/a/"), "n=better");
        EXPECT_EQ(jar.Header(Scope("http://home.example.org/a/b/c")), "n=better");
    }
}

} // namespace
} // namespace brevint::test
