#include "brevint/InternetCache.h"

#include <gtest/gtest.h>

#include <string>

// The jar belongs to the process, so every test has cookies of its own: a path of its own.

namespace brevint::test {
namespace {

TEST(CookieCache, SplitsACookieString) {
    const std::pair<const wchar_t*, CookieParts> cases[] = {
        {L"F=a;F1=", {{L"F", L"a"}, {L"F1", L""}}},
        {L" Path = / ;\ta\t=\r\n1 2\v", {{L"Path", L"/"}, {L"a", L"1 2"}}},
        {L"a=b=c; d==", {{L"a", L"b=c"}, {L"d", L"="}}},
        {L"a=1; A=2; a=3", {{L"a", L"3"}, {L"A", L"2"}}},
        {L"=x; secure; a=1; httponly;;=y", {{L"a", L"1"}}},
        {L"a=1; =x", {{L"", L"x"}, {L"a", L"1"}}}, // the name is the blank, trimmed
        {L";;\u00e9=\u6982;", {{L"\u00e9", L"\u6982"}}},
    };
    for (const auto& [cookie, expected] : cases) {
        SCOPED_TRACE(cookie);
        CookieParts parts;
        CInternetCache().GetCookieParts(cookie, parts);
        EXPECT_EQ(parts, expected);
    }
}

TEST(CookieCache, KnowsReservedNames) {
    for (const auto* name : {L"expires", L"DOMAIN", L"Path", L"sEcUrE", L"httpOnly"}) {
        EXPECT_TRUE(CInternetCache().IsReservedName(name)) << name;
    }
    for (const std::wstring& name :
         {std::wstring(), std::wstring(L"expires\0x", 9), std::wstring(L"path\0", 5),
          std::wstring(L"Exp\u0131res"), std::wstring(L"\u017fecure"), std::wstring(L"domai"),
          std::wstring(L"domains"), std::wstring(L"path "), std::wstring(L"max-age")}) {
        EXPECT_FALSE(CInternetCache().IsReservedName(name)) << name;
    }
}

TEST(CookieCache, StoresPairsAndLeavesAttributesOut) {
    CInternetCache cache;
    const auto* url = L"http://127.0.0.1/store/";
    EXPECT_EQ(cache.GetCookie(url), L"");
    cache.SetCookie(url,
                    L"b=2=x; a=1; Path=/elsewhere; expires=Sat, 01 Jan 2000 00:00:00 GMT; "
                    L"DOMAIN=elsewhere.test; HttpOnly=1; Secure=1; secure; httponly; =nameless");
    EXPECT_EQ(cache.GetCookie(url), L"a=1; b=2=x");
    EXPECT_EQ(cache.GetCookie(L"http://127.0.0.1:8080/store/below?q=1"), L"a=1; b=2=x");
    EXPECT_EQ(cache.GetCookie(L"http://localhost/store/"), L"");

    const std::wstring large = L"a=" + std::wstring(3000, L'x');
    cache.SetCookie(L"http://127.0.0.1/large/", L"a=replaced");
    cache.SetCookie(L"http://127.0.0.1/large/", large.c_str());
    EXPECT_EQ(cache.GetCookie(L"http://127.0.0.1/large/"), large);
}

TEST(CookieCache, DeletesEveryCookieOfTheUrl) {
    CInternetCache cache;
    const auto* url = L"http://127.0.0.1/delete/";
    const auto* other = L"http://127.0.0.1/spared/";
    cache.SetCookie(url, L"FedAuth=1; FedAuth1=2");
    cache.SetCookie(other, L"a=3");
    cache.DeleteCookie(url);
    const std::wstring left = cache.GetCookie(url);
    // Wine keeps the names: it takes the blanks around "=" in the expiry for a part of the
    // attribute.
    EXPECT_EQ(left.find(L'='), std::wstring::npos) << left;
    EXPECT_EQ(cache.GetCookie(other), L"a=3");
}

TEST(CookieCache, DoesNothingWithoutAUrl) {
    CInternetCache cache;
    for (const auto* url : {L"", L"no url", L"/path", static_cast<const wchar_t*>(nullptr)}) {
        cache.SetCookie(url, L"a=1");
        cache.DeleteCookie(url);
        EXPECT_EQ(cache.GetCookie(url), L"");
    }
}

} // namespace
} // namespace brevint::test
