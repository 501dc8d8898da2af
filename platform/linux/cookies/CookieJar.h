#pragma once

#include "platform/linux/Types.h"
#include "platform/linux/cookies/Cookie.h"

#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

/// Cookies. What Get lists for a URL and what an exchange with it sends come from the same place,
/// so they differ in HttpOnly cookies only. Any thread.
class CookieJar {
public:
    /// The process's own, with which its cookies end.
    static CookieJar& Instance(); ///< never destroyed; throws std::bad_alloc

    /// Sets a cookie as a page of the URL could. An empty name is taken from the data, which is
    /// then "name=value; attributes", otherwise "value; attributes". What it refuses:
    /// ERROR_INVALID_PARAMETER: no cookie, or none that the URL can have;
    /// ERROR_INVALID_OPERATION: an HttpOnly one, new or there already, or one in place of a Secure
    /// one that was set over TLS, while the URL is without;
    /// ERROR_NOT_ENOUGH_QUOTA: more than one request could carry.
    DWORD Set(std::wstring_view url, std::string_view name, std::string_view data);

    /// "name=value" pairs joined by "; ": what goes to the URL, but for HttpOnly cookies.
    /// Returns ERROR_NO_MORE_ITEMS if that is nothing.
    DWORD Get(std::wstring_view url, std::string& text) const;

    /// Takes the value of a Set-Cookie header that came from there in an exchange. What Set would
    /// refuse is left out, but HttpOnly cookies are a server's to set.
    void Receive(const CookieScope& scope, std::string_view setCookie);
    /// The value of the Cookie header for an exchange; empty if none is due.
    std::string Header(const CookieScope& scope) const;

private:
    enum class Party { Server, Application };
    DWORD Store(Cookie cookie, Party setter);
    std::string Text(const CookieScope& scope, Party reader) const;

    mutable std::mutex m_mutex;
    std::vector<Cookie> m_cookies; ///< in the order in which they were created
};

} // namespace platform
