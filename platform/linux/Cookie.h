#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace platform {

// Where a cookie comes from or goes to.
struct CookieScope {
    std::string host;    // without brackets
    std::string path;    // of the URL, without query
    bool secure = false; // over TLS or to this machine: what libcurl sends Secure cookies to
};

// One cookie, as libcurl lists them: in lines of Netscape's cookie file format.
struct Cookie {
    std::string domain;
    bool subdomains = false;
    std::string path = "/";
    bool secure = false;
    bool httpOnly = false;
    std::int64_t expires = 0; // seconds since 1970; 0 for the end of the process
    std::string name;
    std::string value;

    // A cookie as a page of that scope sets it; nothing if it must not. `data` is the value and
    // the attributes.
    static std::optional<Cookie> Parse(std::string_view name, std::string_view data,
                                       const CookieScope& scope);
    static std::optional<Cookie> FromLine(std::string_view line);
    std::string ToLine() const;

    bool Expired() const;
    bool GoesTo(const CookieScope& scope) const;
    // Whether setting one replaces the other, for the purpose of protecting it.
    bool SameAs(const Cookie& other) const;
};

} // namespace platform
