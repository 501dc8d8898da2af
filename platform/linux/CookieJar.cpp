#include "platform/linux/CookieJar.h"

#include "base/Ascii.h"
#include "platform/linux/CurlLibrary.h"
#include "platform/linux/RequestTarget.h"
#include "platform/linux/UrlCracker.h"
#include "support/Utf8.h"

#include <algorithm>
#include <memory>
#include <new>

namespace platform {

namespace {

/// Of one domain. libcurl sends no more of them, and takes the longer for each the more it has.
constexpr std::size_t kMostCookies = 150;

DWORD ParseScope(std::wstring_view url, CookieScope& scope) {
    UrlParts parts;
    if (const DWORD error = CrackUrl(url, parts)) {
        return error;
    }
    if (parts.scheme != INTERNET_SCHEME_HTTP && parts.scheme != INTERNET_SCHEME_HTTPS) {
        return ERROR_INTERNET_UNRECOGNIZED_SCHEME;
    }
    std::wstring_view host = parts.host;
    if (host.starts_with(L'[')) {
        host = host.substr(1, host.size() - 2);
    }
    scope.host = Utf8::ToNarrow(host);
    scope.path = RequestTarget(parts.path);
    scope.path.resize(std::min(scope.path.find('?'), scope.path.size()));
    scope.secure = parts.scheme == INTERNET_SCHEME_HTTPS ||
                   base::EqualsIgnoreCase(scope.host, "localhost") || scope.host == "127.0.0.1" ||
                   scope.host == "::1";
    return ERROR_SUCCESS;
}

CURLSH* NewShare() {
    InitializeCurl();
    return curl_share_init();
}

} // namespace

CookieJar& CookieJar::Instance() {
    static CookieJar& jar = *new CookieJar;
    return jar;
}

CookieJar::CookieJar() : m_share(NewShare()), m_easy(curl_easy_init()) {
    if (m_share == nullptr || m_easy == nullptr) {
        throw std::bad_alloc();
    }
    curl_share_setopt(m_share, CURLSHOPT_LOCKFUNC, &CookieJar::Lock);
    curl_share_setopt(m_share, CURLSHOPT_UNLOCKFUNC, &CookieJar::Unlock);
    curl_share_setopt(m_share, CURLSHOPT_USERDATA, this);
    curl_share_setopt(m_share, CURLSHOPT_SHARE, CURL_LOCK_DATA_COOKIE);
    curl_easy_setopt(m_easy, CURLOPT_SHARE, m_share);
}

void CookieJar::Lock(CURL*, curl_lock_data data, curl_lock_access, void* self) {
    static_cast<CookieJar*>(self)->m_shareMutexes[data].lock();
}

void CookieJar::Unlock(CURL*, curl_lock_data data, void* self) {
    static_cast<CookieJar*>(self)->m_shareMutexes[data].unlock();
}

DWORD CookieJar::Set(std::wstring_view url, std::string_view name, std::string_view data) {
    CookieScope scope;
    if (const DWORD error = ParseScope(url, scope)) {
        return error;
    }
    if (name.empty()) {
        const std::string_view pair = data.substr(0, data.find(';'));
        name = pair.substr(0, pair.find('='));
        data.remove_prefix(std::min(name.size() + 1, pair.size()));
        if (pair.empty()) {
            return ERROR_SUCCESS; // attributes of no cookie
        }
    }
    const auto cookie = Cookie::Parse(name, data, scope);
    if (!cookie) {
        return ERROR_INVALID_PARAMETER;
    }

    const std::lock_guard lock(m_easyMutex);
    bool isNew = true;
    std::size_t neighbours = 0;
    for (const Cookie& present : Cookies()) {
        neighbours += base::EqualsIgnoreCase(present.domain, cookie->domain) ? 1 : 0;
        if (!present.SameAs(*cookie)) {
            continue;
        }
        isNew = false;
        if (present.httpOnly || (present.secure && !scope.secure)) {
            return ERROR_INVALID_OPERATION;
        }
    }
    if (cookie->httpOnly) {
        return ERROR_INVALID_OPERATION;
    }
    if (isNew && neighbours >= kMostCookies) {
        return ERROR_NOT_ENOUGH_MEMORY;
    }
    const CURLcode outcome = curl_easy_setopt(m_easy, CURLOPT_COOKIELIST, cookie->ToLine().c_str());
    return outcome == CURLE_OK ? ERROR_SUCCESS : ERROR_NOT_ENOUGH_MEMORY;
}

DWORD CookieJar::Get(std::wstring_view url, std::string& text) {
    CookieScope scope;
    if (const DWORD error = ParseScope(url, scope)) {
        return error;
    }
    std::vector<Cookie> cookies;
    {
        const std::lock_guard lock(m_easyMutex);
        cookies = Cookies();
    }
    std::erase_if(cookies, [&](const Cookie& c) { return c.httpOnly || !c.GoesTo(scope); });
    std::ranges::stable_sort(cookies, std::ranges::greater(),
                             [](const Cookie& c) { return c.path.size(); });
    text.clear();
    for (const Cookie& cookie : cookies) {
        text += (text.empty() ? "" : "; ") + cookie.name + "=" + cookie.value;
    }
    return cookies.empty() ? ERROR_NO_MORE_ITEMS : ERROR_SUCCESS;
}

bool CookieJar::HasCookies(const std::string& url) {
    CookieScope scope;
    if (ParseScope(Utf8::ToWide(url), scope) != ERROR_SUCCESS) {
        return false;
    }
    const std::lock_guard lock(m_easyMutex);
    return std::ranges::any_of(Cookies(), [&](const Cookie& c) { return c.GoesTo(scope); });
}

// All that are valid now, those of one domain in the order in which they were set first.
std::vector<Cookie> CookieJar::Cookies() {
    curl_slist* lines = nullptr;
    if (curl_easy_getinfo(m_easy, CURLINFO_COOKIELIST, &lines) != CURLE_OK) {
        throw std::bad_alloc();
    }
    const std::unique_ptr<curl_slist, decltype(&curl_slist_free_all)> owner(lines,
                                                                            &curl_slist_free_all);
    std::vector<Cookie> cookies;
    for (const curl_slist* line = lines; line != nullptr; line = line->next) {
        auto cookie = Cookie::FromLine(line->data);
        if (cookie && !cookie->Expired()) {
            cookies.push_back(std::move(*cookie));
        }
    }
    return cookies;
}

} // namespace platform
