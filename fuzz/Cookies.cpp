#include "base/Ascii.h"
#include "brevint/InternetCache.h"
#include "fuzz/Fuzz.h"
#include "platform/linux/CookieJar.h"
#include "support/Utf8.h"

using namespace platform;

/// An address and, on the next line, a cookie string for it.
void Fuzz(std::string_view input) {
    static CURL* const easy = curl_easy_init();
    curl_easy_setopt(easy, CURLOPT_SHARE, CookieJar::Instance().Share());
    curl_easy_setopt(easy, CURLOPT_COOKIELIST, "ALL"); // forgets all

    const std::wstring url = Utf8::ToWide(TakeLine(input)).c_str();
    CInternetCache cache;
    cache.SetCookie(url.c_str(), Utf8::ToWide(input).c_str());
    CookieJar::Instance().Set(url, "", input);
    Require(!base::HasControls(Utf8::ToNarrow(cache.GetCookie(url.c_str()))));
    cache.DeleteCookie(url.c_str());
    if (const auto cookie = Cookie::Parse("n", input, {"host.example.org", "/a/b", true})) {
        Require(Cookie::FromLine(cookie->ToLine()).value().ToLine() == cookie->ToLine());
        Require(cookie->domain.size() > 10 &&
                cookie->GoesTo({"host.example.org", cookie->path, true}));
    }
}
