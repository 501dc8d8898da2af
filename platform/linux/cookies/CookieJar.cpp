#include "platform/linux/cookies/CookieJar.h"

#include "platform/linux/Limits.h"
#include "platform/linux/WinInet.h"
#include "platform/linux/urls/RequestTarget.h"
#include "platform/linux/urls/Url.h"
#include "platform/linux/urls/UrlCracker.h"
#include "support/Utf8.h"

#include <algorithm>
#include <functional>

namespace platform {

namespace {

DWORD ParseScope(std::wstring_view url, CookieScope& scope) {
    UrlParts parts;
    if (const DWORD error = CrackUrl(url, parts)) {
        return error;
    }
    if (parts.scheme != INTERNET_SCHEME_HTTP && parts.scheme != INTERNET_SCHEME_HTTPS) {
        return ERROR_INTERNET_UNRECOGNIZED_SCHEME;
    }
    // As the address of a request is made, so that both mean the same host and path.
    scope = CookieScope::Of(Url(Utf8::ToNarrow(parts.schemeName) + "://" +
                                Utf8::ToNarrow(parts.host) + RequestTarget(parts.path)));
    return scope.host.empty() ? ERROR_INTERNET_INVALID_URL : ERROR_SUCCESS;
}

} // namespace

CookieJar& CookieJar::Instance() {
    static CookieJar& jar = *new CookieJar;
    return jar;
}

DWORD CookieJar::Set(std::wstring_view url, std::string_view name, std::string_view data) {
    CookieScope scope;
    if (const DWORD error = ParseScope(url, scope)) {
        return error;
    }
    if (name.empty() && (data.empty() || data.starts_with(';'))) {
        return ERROR_SUCCESS; // attributes of no cookie
    }
    auto cookie = name.empty() ? Cookie::Parse(data, scope) : Cookie::Parse(name, data, scope);
    return cookie ? Store(std::move(*cookie), Party::Application) : ERROR_INVALID_PARAMETER;
}

DWORD CookieJar::Get(std::wstring_view url, std::string& text) const {
    CookieScope scope;
    if (const DWORD error = ParseScope(url, scope)) {
        return error;
    }
    text = Text(scope, Party::Application);
    return text.empty() ? ERROR_NO_MORE_ITEMS : ERROR_SUCCESS;
}

void CookieJar::Receive(const CookieScope& scope, std::string_view setCookie) {
    if (auto cookie = Cookie::Parse(setCookie, scope)) {
        Store(std::move(*cookie), Party::Server);
    }
}

std::string CookieJar::Header(const CookieScope& scope) const {
    return Text(scope, Party::Server);
}

DWORD CookieJar::Store(Cookie cookie, Party setter) {
    const std::lock_guard lock(m_mutex);
    std::erase_if(m_cookies, std::mem_fn(&Cookie::Expired));
    const auto same = std::ranges::find_if(
        m_cookies, [&](const Cookie& present) { return present.SameAs(cookie); });
    const bool isNew = same == m_cookies.end();
    const bool hidden = cookie.httpOnly || (!isNew && same->httpOnly);
    if ((hidden && setter == Party::Application) ||
        std::ranges::any_of(m_cookies,
                            [&](const Cookie& present) { return cookie.Usurps(present); })) {
        return ERROR_INVALID_OPERATION;
    }
    if (cookie.Expired()) {
        m_cookies.erase(same, isNew ? same : std::next(same));
        return ERROR_SUCCESS;
    }
    std::size_t count = 1;
    std::size_t size = cookie.Size();
    for (const Cookie& present : m_cookies) {
        if (!present.SameAs(cookie) && present.MayMeet(cookie)) {
            ++count;
            size += present.Size();
        }
    }
    if (count > kMostCookies || size > kMostCookieBytes) {
        return ERROR_NOT_ENOUGH_QUOTA;
    }
    if (isNew) {
        m_cookies.push_back(std::move(cookie));
    } else {
        *same = std::move(cookie);
    }
    return ERROR_SUCCESS;
}

std::string CookieJar::Text(const CookieScope& scope, Party reader) const {
    const std::lock_guard lock(m_mutex);
    std::vector<const Cookie*> chosen;
    for (const Cookie& cookie : m_cookies) {
        const bool visible = !cookie.httpOnly || reader == Party::Server;
        if (visible && !cookie.Expired() && cookie.GoesTo(scope)) {
            chosen.push_back(&cookie);
        }
    }
    std::ranges::stable_sort(chosen, std::ranges::greater(),
                             [](const Cookie* cookie) { return cookie->path.size(); });
    std::string text;
    for (const Cookie* cookie : chosen) {
        text += (text.empty() ? "" : "; ") + cookie->name + "=" + cookie->value;
    }
    return text;
}

} // namespace platform
