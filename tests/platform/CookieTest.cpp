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
    return std::wstring(cookies.c_str());
}

/// What the Cookie header of a request for this URL says.
std::string CookiesSent(ScriptedServer& server, const std::wstring& url, RequestSetup setup = {}) {
    Exchange exchange(url, std::move(setup));
    return exchange.Send() ? server.Requests().back().Header("Cookie") : "(not sent)";
}

// Each row sets a cookie, if it names an address for it, and then asks the jar.
TEST(Cookie, SetByTheClientFollowsTheRules) {
    const std::wstring nameless(target::kNamelessCookie.begin(), target::kNamelessCookie.end());
    const std::wstring expired = L";expires = Sat,01-Jan-2000 00:00:00 GMT";
    const std::wstring gone = target::kExpiredCookieVanishes ? L"stays=2" : L"stays=2; goes";
    const std::wstring twoNames = target::kCookieNamesHaveCase ? L"N=1; n=2" : L"n=2";
    const std::wstring insecure = target::kSecureCookieNeedsTls ? L"(none)" : L"n=1";
    const struct {
        const wchar_t* setAt;
        const wchar_t* name;
        std::wstring data;
        const wchar_t* askedAt;
        std::wstring cookies;
    } rows[] = {
        {L"http://a.wide.test/", L"n", L"1; domain=.wide.test", L"http://wide.test/", L"n=1"},
        {nullptr, nullptr, L"", L"http://x.b.wide.test/", L"n=1"},
        {nullptr, nullptr, L"", L"http://otherwide.test/", L"(none)"},
        {L"http://a.own.test/", L"n", L"1", L"https://a.own.test:81/", L"n=1"},
        {nullptr, nullptr, L"", L"http://b.own.test/", L"(none)"},
        {L"http://root.test/a/b", L"n", L"1; path=/", L"http://root.test/", L"n=1"},
        {L"http://folder.test/a/page", L"n", L"1", L"http://folder.test/a/b/c", L"n=1"},
        {nullptr, nullptr, L"", L"http://folder.test/b/a/", L"(none)"},
        {L"http://path.test/", L"n", L"1; path=/a/b/", L"http://path.test/a/b/c", L"n=1"},
        {nullptr, nullptr, L"", L"http://path.test/a/", L"(none)"},
        {L"http://form.test/", L"n", L"x=y", L"http://form.test/", L"n=x=y"},
        {L"http://form.test/a/b", nullptr, L"m=2; path=/", L"http://form.test/", L"n=x=y; m=2"},
        {L"http://again.test/", L"n", L"1", L"http://again.test/", L"n=1"},
        {L"http://again.test/", L"n", L"2", L"http://again.test/", L"n=2"},
        {L"https://secure.test/", L"n", L"1; secure", L"https://secure.test/", L"n=1"},
        {nullptr, nullptr, L"", L"http://secure.test/", insecure},
        {L"http://plain.test/", L"n", L"1; secure", L"https://plain.test/", L"n=1"},
        {nullptr, nullptr, L"", L"http://plain.test/", insecure},
        {L"http://127.0.0.1/secure/", L"n", L"1; secure", L"http://127.0.0.1/secure/", insecure},
        {L"http://case.test/", L"N", L"1", L"http://case.test/", L"N=1"},
        {L"http://case.test/", L"n", L"2", L"http://case.test/", twoNames},
        {L"http://expired.test/", L"stays", L"2", L"http://expired.test/", L"stays=2"},
        {L"http://expired.test/", L"goes", L"1", L"http://expired.test/", L"stays=2; goes=1"},
        {L"http://expired.test/", L"goes", expired, L"http://expired.test/", gone},
        {L"http://expired.test/", L"goes", L"3", L"http://expired.test/", L"stays=2; goes=3"},
        {L"http://nameless.test/", L"", L"n=v; path=/", L"http://nameless.test/", nameless},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.askedAt);
        EXPECT_TRUE(row.setAt == nullptr ||
                    InternetSetCookieW(row.setAt, row.name, row.data.c_str()));
        EXPECT_EQ(CookiesOf(row.askedAt), row.cookies);
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
