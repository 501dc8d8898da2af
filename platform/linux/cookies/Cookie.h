#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace platform {

class Url;

/// Where a cookie comes from or goes to.
struct CookieScope {
    std::string host;    ///< in small letters, without brackets; empty: nowhere
    std::string path;    ///< as on the request line, without query
    bool secure = false; ///< over TLS

    /// Of an absolute, escaped URL. Where libcurl finds no host in it, no cookie comes or goes.
    static CookieScope Of(const Url& url);
};

/// One cookie, by the rules of RFC 6265.
struct Cookie {
    std::string name;
    std::string value;
    std::string domain; ///< in small letters, without a dot in front
    std::string path;
    bool subdomains = false;
    bool secure = false; ///< goes over TLS only
    bool httpOnly = false;
    bool setOverTls = false;
    std::optional<std::int64_t> expires; ///< in seconds since 1970; nothing: with the process

    /// The cookie that "name=value; attributes" sets in that scope; nothing if it must not, or if
    /// what is listed and what is sent of it could not be the same: name and value are UTF-8
    /// without control characters.
    static std::optional<Cookie> Parse(std::string_view text, const CookieScope& scope);
    static std::optional<Cookie> Parse(std::string_view name, std::string_view data,
                                       const CookieScope& scope);

    bool Expired() const;
    bool GoesTo(const CookieScope& scope) const;
    /// Whether setting one replaces the other.
    bool SameAs(const Cookie& other) const;
    /// Whether there are hosts that both could go to.
    bool MayMeet(const Cookie& other) const;
    /// Whether this one, set without TLS, would stand in for one that was set over TLS for TLS
    /// only.
    bool Usurps(const Cookie& other) const;
    /// What it takes in a Cookie header.
    std::size_t Size() const;
};

} // namespace platform
