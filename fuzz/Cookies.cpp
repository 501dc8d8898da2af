#include "brevint/InternetCache.h"
#include "fuzz/Fuzz.h"
#include "platform/linux/cookies/CookieDate.h"
#include "platform/linux/cookies/CookieJar.h"
#include "platform/linux/http/HeaderList.h"
#include "platform/linux/urls/Url.h"
#include "support/Utf8.h"

using namespace platform;

/// An address and, on the next lines, cookies for it.
void Fuzz(std::string_view input) {
    const std::string address(TakeLine(input));
    const std::wstring url = Utf8::ToWide(address.substr(0, address.find('\0')));
    CInternetCache cache;
    cache.SetCookie(url.c_str(), Utf8::ToWide(input).c_str());
    cache.DeleteCookie(url.c_str());
    Require(cache.GetCookie(url.c_str()).empty());

    const CookieScope scope = CookieScope::Of(Url(address));
    CookieJar ofReplies;
    CookieJar ofTheApplication;
    while (!input.empty()) {
        const std::string_view cookie = TakeLine(input);
        ofReplies.Receive(scope, cookie);
        ofTheApplication.Set(url, "", cookie);
    }
    const std::string sent = ofReplies.Header(scope);
    Require(IsFieldValue(sent) && Utf8::IsValid(sent));
    std::string listed;
    const bool isAny = ofTheApplication.Get(url, listed) == ERROR_SUCCESS;
    Require(isAny == !listed.empty() && IsFieldValue(listed) && Utf8::IsValid(listed));
    ParseCookieDate(address);
}
