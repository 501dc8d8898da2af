#include "platform/linux/Cookie.h"

#include "base/Ascii.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <ctime>
#include <curl/curl.h>

namespace platform {

namespace {

using std::string_view;

constexpr std::int64_t kLongPast = 1; // 0 would mean no expiry at all

// Cuts the text at the first separator: returns what is before it and leaves what is behind.
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

bool IsWithin(string_view host, string_view domain) {
    return base::EqualsIgnoreCase(host, domain) ||
           (!IsAddress(host) && host.size() > domain.size() &&
            base::EqualsIgnoreCase(host.substr(host.size() - domain.size()), domain) &&
            host[host.size() - domain.size() - 1] == '.');
}

// Without its last slash, so that "/a" and "/a/" are one path.
string_view Folder(string_view path) {
    return path.ends_with('/') ? path.substr(0, path.size() - 1) : path;
}

std::int64_t ParseExpires(const std::string& date) {
    const std::time_t time = curl_getdate(date.c_str(), nullptr);
    // A text that is no date is ignored.
    return time == -1 ? 0 : std::max<std::int64_t>(time, kLongPast);
}

std::optional<std::int64_t> ParseMaxAge(string_view text) {
    std::int64_t seconds = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), seconds);
    if (error == std::errc::invalid_argument || end != text.data() + text.size()) {
        return std::nullopt;
    }
    constexpr std::int64_t kForever = std::int64_t{100} * 365 * 24 * 60 * 60;
    if (error == std::errc::result_out_of_range) {
        seconds = text.front() == '-' ? 0 : kForever;
    }
    return seconds <= 0 ? kLongPast : std::time(nullptr) + std::min(seconds, kForever);
}

} // namespace

std::optional<Cookie> Cookie::Parse(string_view name, string_view data, const CookieScope& scope) {
    Cookie cookie;
    cookie.domain = scope.host;
    cookie.path = scope.path.substr(0, std::max<std::size_t>(scope.path.rfind('/'), 1));
    cookie.name = base::Trim(name);
    cookie.value = base::Trim(Cut(data, ';'));
    std::optional<std::int64_t> maxAge;
    while (!data.empty()) {
        string_view attribute = Cut(data, ';');
        const string_view key = base::Trim(Cut(attribute, '='));
        string_view value = base::Trim(attribute);
        if (base::EqualsIgnoreCase(key, "expires")) {
            cookie.expires = ParseExpires(std::string(value));
        } else if (base::EqualsIgnoreCase(key, "max-age")) {
            maxAge = ParseMaxAge(value);
        } else if (base::EqualsIgnoreCase(key, "path") && value.starts_with('/')) {
            cookie.path = value;
        } else if (base::EqualsIgnoreCase(key, "domain") && !value.empty()) {
            value.remove_prefix(value.starts_with('.') ? 1 : 0);
            cookie.domain = value;
            cookie.subdomains = !IsAddress(cookie.domain);
        } else if (base::EqualsIgnoreCase(key, "secure")) {
            cookie.secure = true;
        } else if (base::EqualsIgnoreCase(key, "httponly")) {
            cookie.httpOnly = true;
        }
    }
    cookie.expires = maxAge.value_or(cookie.expires);

    // A domain of one label, unless it is the host itself, would reach half the world.
    const bool ownDomain =
        base::EqualsIgnoreCase(cookie.domain, scope.host) ||
        (IsWithin(scope.host, cookie.domain) && cookie.domain.find('.') != std::string::npos);
    const bool clean = !cookie.name.empty() &&
                       cookie.name.find_first_of("=;") == std::string::npos &&
                       !base::HasControls(cookie.name) && !base::HasControls(cookie.value) &&
                       !base::HasControls(cookie.path);
    if (!ownDomain || !clean || (cookie.secure && !scope.secure)) {
        return std::nullopt;
    }
    return cookie;
}

std::optional<Cookie> Cookie::FromLine(string_view line) {
    constexpr string_view kHttpOnly = "#HttpOnly_";
    Cookie cookie;
    cookie.httpOnly = line.starts_with(kHttpOnly);
    line.remove_prefix(cookie.httpOnly ? kHttpOnly.size() : 0);
    if (std::ranges::count(line, '\t') != 6) {
        return std::nullopt;
    }
    std::array<string_view, 7> fields;
    std::ranges::generate(fields, [&line] { return Cut(line, '\t'); });
    const auto& [domain, subdomains, path, secure, expires, name, value] = fields;
    cookie.domain = domain.substr(domain.starts_with('.') ? 1 : 0);
    cookie.subdomains = subdomains == "TRUE";
    cookie.path = path;
    cookie.secure = secure == "TRUE";
    std::from_chars(expires.data(), expires.data() + expires.size(), cookie.expires);
    cookie.name = name;
    cookie.value = value;
    return cookie;
}

std::string Cookie::ToLine() const {
    const char* const flags[] = {"FALSE", "TRUE"};
    return std::string(httpOnly ? "#HttpOnly_" : "") + domain + "\t" + flags[subdomains] + "\t" +
           path + "\t" + flags[secure] + "\t" + std::to_string(expires) + "\t" + name + "\t" +
           value;
}

bool Cookie::Expired() const {
    return expires != 0 && expires < std::time(nullptr);
}

bool Cookie::GoesTo(const CookieScope& scope) const {
    const bool toHost =
        subdomains ? IsWithin(scope.host, domain) : base::EqualsIgnoreCase(scope.host, domain);
    const string_view folder = Folder(path);
    const bool toPath = scope.path.starts_with(folder) &&
                        (scope.path.size() == folder.size() || scope.path[folder.size()] == '/');
    return toHost && (toPath || folder.empty()) && (!secure || scope.secure);
}

bool Cookie::SameAs(const Cookie& other) const {
    return base::EqualsIgnoreCase(name, other.name) &&
           base::EqualsIgnoreCase(domain, other.domain) && Folder(path) == Folder(other.path);
}

} // namespace platform
