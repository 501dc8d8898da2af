#include "platform/linux/cookies/Cookie.h"

#include "base/Ascii.h"
#include "platform/linux/cookies/CookieDate.h"
#include "platform/linux/cookies/PublicSuffix.h"
#include "platform/linux/http/HeaderList.h"
#include "platform/linux/urls/Url.h"
#include "support/Utf8.h"

#include <algorithm>
#include <charconv>
#include <ctime>
#include <limits>

namespace platform {

namespace {

using std::string_view;

// Cuts the text at the first separator: returns what is before it and leaves what is after it.
string_view Cut(string_view& text, char separator) {
    const std::size_t end = text.find(separator);
    const string_view piece = text.substr(0, end);
    text.remove_prefix(end == string_view::npos ? text.size() : end + 1);
    return piece;
}

bool IsAddress(string_view host) {
    return host.find_first_not_of("0123456789.") == string_view::npos ||
           host.find(':') != string_view::npos;
}

// Both in small letters.
bool IsWithin(string_view host, string_view domain) {
    return host == domain ||
           (!IsAddress(host) && host.size() > domain.size() && host.ends_with(domain) &&
            host[host.size() - domain.size() - 1] == '.');
}

bool IsBelow(string_view path, string_view folder) {
    return path.starts_with(folder) &&
           (path.size() == folder.size() || folder.ends_with('/') || path[folder.size()] == '/');
}

// A moment that lies in the past for as long as clocks are right.
constexpr std::int64_t kLongPast = std::numeric_limits<std::int64_t>::min();

std::optional<std::int64_t> ParseMaxAge(string_view text) {
    std::int64_t seconds = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), seconds);
    if (error == std::errc::invalid_argument || end != text.data() + text.size()) {
        return std::nullopt;
    }
    constexpr std::int64_t kForever = std::int64_t{100} * 365 * 24 * 60 * 60;
    if (error == std::errc::result_out_of_range) {
        seconds = text.starts_with('-') ? 0 : kForever;
    }
    return seconds <= 0 ? kLongPast : std::time(nullptr) + std::min(seconds, kForever);
}

bool IsText(string_view text) {
    return IsFieldValue(text) && Utf8::IsValid(text);
}

} // namespace

CookieScope CookieScope::Of(const Url& url) {
    return {url.Host(), url.Part(CURLUPART_PATH), url.Part(CURLUPART_SCHEME) == "https"};
}

std::optional<Cookie> Cookie::Parse(string_view text, const CookieScope& scope) {
    const string_view pair = text.substr(0, text.find(';'));
    const std::size_t equals = pair.find('=');
    return equals == string_view::npos
               ? std::nullopt
               : Parse(text.substr(0, equals), text.substr(equals + 1), scope);
}

std::optional<Cookie> Cookie::Parse(string_view name, string_view data, const CookieScope& scope) {
    const std::string folder =
        scope.path.substr(0, std::max<std::size_t>(scope.path.rfind('/'), 1));
    Cookie cookie;
    cookie.name = base::Trim(name);
    cookie.path = folder;
    cookie.setOverTls = scope.secure;
    cookie.value = base::Trim(Cut(data, ';'));
    std::optional<std::int64_t> maxAge;
    // Of attributes that are repeated, the last one that makes sense counts.
    while (!data.empty()) {
        string_view attribute = Cut(data, ';');
        const string_view key = base::Trim(Cut(attribute, '='));
        string_view value = base::Trim(attribute);
        if (base::EqualsIgnoreCase(key, "expires")) {
            const auto date = ParseCookieDate(value);
            cookie.expires = date ? date : cookie.expires;
        } else if (base::EqualsIgnoreCase(key, "max-age")) {
            const auto age = ParseMaxAge(value);
            maxAge = age ? age : maxAge;
        } else if (base::EqualsIgnoreCase(key, "path")) {
            cookie.path = value.starts_with('/') ? value : folder;
        } else if (base::EqualsIgnoreCase(key, "domain") && !value.empty()) {
            value.remove_prefix(value.starts_with('.') ? 1 : 0);
            cookie.domain = base::ToLower(value);
        } else if (base::EqualsIgnoreCase(key, "secure")) {
            cookie.secure = true;
        } else if (base::EqualsIgnoreCase(key, "httponly")) {
            cookie.httpOnly = true;
        }
    }
    cookie.expires = maxAge ? maxAge : cookie.expires;

    // A domain below which strangers have theirs is good for the host of that very name only.
    cookie.subdomains =
        !cookie.domain.empty() && !IsAddress(cookie.domain) && !IsPublicSuffix(cookie.domain);
    if (cookie.domain.empty()) {
        cookie.domain = scope.host;
    }
    const bool ownDomain =
        cookie.domain == scope.host || (cookie.subdomains && IsWithin(scope.host, cookie.domain));
    const bool clean = !scope.host.empty() && !cookie.name.empty() &&
                       cookie.name.find_first_of("=;") == std::string::npos &&
                       IsText(cookie.name) && IsText(cookie.value);
    return ownDomain && clean ? std::optional(std::move(cookie)) : std::nullopt;
}

bool Cookie::Expired() const {
    return expires && *expires <= std::time(nullptr);
}

bool Cookie::GoesTo(const CookieScope& scope) const {
    return (subdomains ? IsWithin(scope.host, domain) : scope.host == domain) &&
           IsBelow(scope.path, path) && (!secure || scope.secure);
}

bool Cookie::SameAs(const Cookie& other) const {
    return name == other.name && domain == other.domain && path == other.path;
}

bool Cookie::MayMeet(const Cookie& other) const {
    return IsWithin(domain, other.domain) || IsWithin(other.domain, domain);
}

bool Cookie::Usurps(const Cookie& other) const {
    return !setOverTls && other.setOverTls && other.secure && name == other.name &&
           MayMeet(other) && IsBelow(path, other.path);
}

std::size_t Cookie::Size() const {
    return name.size() + value.size() + std::string_view("=; ").size();
}

} // namespace platform
