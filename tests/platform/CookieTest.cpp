#include "tests/platform/Exchange.h"
#include "tests/platform/Target.h"
#include "tests/support/ScriptedServer.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

// The jar belongs to the process, so every test here has cookie names or hosts of its own.

namespace brevint::test {
namespace {

/// The jar's cookies for a URL, asked for as a client does; "(none)" when it has none.
std::wstring CookiesOf(const std::wstring& url) {
    DWORD size = 0;
    if (!InternetGetCookieW(url.c_str(), nullptr, nullptr, &size)) {
        return L"(none)";
    }
    std::wstring cookies(size, L'\0');
    EXPECT_TRUE(InternetGetCookieW(url.c_str(), nullptr, cookies.data(), &size));
    return cookies.substr(0, cookies.find(L'\0'));
}

/// What the Cookie header of a request for this URL says.
std::string CookiesSent(ScriptedServer& server, const std::wstring& url, RequestSetup setup = {}) {
    Exchange exchange(url, std::move(setup));
    return exchange.Send() ? server.Requests().back().Header("Cookie") : "(not sent)";
}

// What the Linux layer decides beyond this, linux/CookieRulesTest.cpp states.
TEST(Cookie, SetByTheClientIsForItsHostAndItsPath) {
    const auto set = [](const wchar_t* url, const wchar_t* name, const wchar_t* data) {
        EXPECT_TRUE(InternetSetCookieW(url, name, data));
    };
    set(L"http://a.wide.test/", L"n", L"1; domain=.wide.test");
    set(L"http://form.test/a/", L"n", L"x=y; path=/");
    set(L"http://form.test/a/b", nullptr, L"m=2; path=/");
    set(L"http://form.test/a/b", L"o", L"3");
    set(L"http://expired.test/", L"stays", L"2");
    set(L"http://expired.test/", L"goes", L"1");
    set(L"http://expired.test/", L"goes", L";expires = Sat,01-Jan-2000 00:00:00 GMT");
    set(L"http://nameless.test/", L"", L"n=v; path=/");
    const std::wstring nameless(target::kNamelessCookie.begin(), target::kNamelessCookie.end());
    const std::pair<const wchar_t*, std::wstring> cases[] = {
        {L"http://x.b.wide.test/", L"n=1"},
        {L"http://otherwide.test/", L"(none)"},
        {L"http://form.test:81/", L"n=x=y; m=2"},
        {L"http://form.test/a/c", L"o=3; n=x=y; m=2"},
        {L"http://expired.test/", target::kExpiredCookieVanishes ? L"stays=2" : L"stays=2; goes"},
        {L"http://nameless.test/", nameless},
    };
    for (const auto& [url, cookies] : cases) {
        EXPECT_EQ(CookiesOf(url), cookies) << url;
    }
}

TEST(Cookie, OfAReplyTravelsWithLaterSessions) {
    ScriptedServer server;
    server.On("/set").Reply(200, {{"Set-Cookie", "later=a=b; path=/"},
                                  {"Set-Cookie", "hidden=1; Path=/; HttpOnly"},
                                  {"Set-Cookie", "foreign=1; Domain=elsewhere.test; Path=/"}});
    server.On("/unset").Reply(
        200, {{"Set-Cookie", "later=; Path=/; Expires=Sat, 01 Jan 2000 00:00:00 GMT"}});
    CookiesSent(server, server.Url("/set", "localhost"));
    // What is for HTTP only is sent and neither shown nor changed.
    const auto jar = server.Url("/any", "localhost");
    EXPECT_EQ(CookiesOf(jar), L"later=a=b");
    EXPECT_FALSE(InternetSetCookieW(jar.c_str(), L"hidden", L"2"));
    EXPECT_EQ(GetLastError(), ERROR_INVALID_OPERATION);
    EXPECT_EQ(CookiesOf(L"http://elsewhere.test/"), L"(none)");
    const auto sent = CookiesSent(server, server.Url("/unset", "localhost"));
    EXPECT_NE(sent.find("later=a=b"), std::string::npos) << sent;
    EXPECT_NE(sent.find("hidden=1"), std::string::npos) << sent;
    EXPECT_EQ(sent.find("foreign"), std::string::npos) << sent;
    EXPECT_EQ(CookiesSent(server, server.Url("/unset", "localhost")), "hidden=1");
}

// What the caller puts into the header counts only where the jar is not asked, or has nothing.
TEST(Cookie, OfTheJarReplacesTheCallersHeader) {
    ScriptedServer server;
    server.On("/").Reply(200);
    ASSERT_TRUE(InternetSetCookieW(server.Url("/").c_str(), L"jars", L"1"));
    const auto url = server.Url("/");
    const auto* header = L"Cookie: callers=1\r\n";
    const auto jars = CookiesSent(server, url, {.headers = header});
    EXPECT_NE(jars.find("jars=1"), std::string::npos) << jars;
    EXPECT_EQ(jars.find("callers"), std::string::npos) << jars;
    EXPECT_EQ(CookiesSent(server, url, {.flags = INTERNET_FLAG_NO_COOKIES, .headers = header}),
              "callers=1");
}

TEST(Cookie, SizeIsInBytesWithoutABufferAndInCharactersWithOne) {
    const auto* url = L"http://size.test/";
    DWORD size = 77;
    EXPECT_FALSE(InternetGetCookieW(url, nullptr, nullptr, &size));
    EXPECT_EQ(GetLastError(), ERROR_NO_MORE_ITEMS);
    EXPECT_EQ(size, 77u);

    ASSERT_TRUE(InternetSetCookieW(url, L"name", L"value"));
    constexpr DWORD kCharacters = sizeof "name=value";
    constexpr DWORD kBytes = kCharacters * sizeof(wchar_t);
    EXPECT_TRUE(InternetGetCookieW(url, nullptr, nullptr, &size));
    EXPECT_EQ(size, kBytes);

    wchar_t buffer[64] = L"untouched";
    size = kCharacters - 1;
    EXPECT_FALSE(InternetGetCookieW(url, nullptr, buffer, &size));
    EXPECT_EQ(GetLastError(), ERROR_INSUFFICIENT_BUFFER);
    EXPECT_EQ(size, kBytes);
    EXPECT_EQ(buffer, std::wstring(L"untouched"));

    size = kCharacters;
    EXPECT_TRUE(InternetGetCookieW(url, nullptr, buffer, &size));
    EXPECT_EQ(size, kCharacters);
    EXPECT_EQ(buffer, std::wstring(L"name=value"));
}

TEST(Cookie, NeedsAnAddressAndADomainOfIts) {
    for (const auto* url : {L"", L"plain", L"/a", static_cast<const wchar_t*>(nullptr)}) {
        DWORD size = 77;
        EXPECT_FALSE(InternetGetCookieW(url, nullptr, nullptr, &size));
        EXPECT_FALSE(InternetSetCookieW(url, L"n", L"v"));
    }
    EXPECT_FALSE(InternetSetCookieW(L"http://mine.test/", L"n", L"1; domain=.foreign.test"));
    EXPECT_EQ(CookiesOf(L"http://mine.test/"), L"(none)");
}

} // namespace
} // namespace brevint::test
