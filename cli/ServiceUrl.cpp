#include "cli/ServiceUrl.h"

#include "base/Ascii.h"
#include "cli/Failure.h"

#include <algorithm>
#include <charconv>

namespace brevint::cli {

namespace {

bool IsProper(std::string_view url) {
    return std::all_of(url.begin(), url.end(), [](char c) {
        return c > 0x20 && c < 0x7F &&
               std::string_view("\\\"<>^`{|}").find(c) == std::string_view::npos;
    });
}

/// Whether the port after a host is one: "" or ":1" to ":65535".
bool IsPort(std::string_view text) {
    if (text.empty()) {
        return true;
    }
    unsigned port = 0;
    const char* const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data() + 1, end, port);
    return text.front() == ':' && error == std::errc() && rest == end && port >= 1 && port <= 65535;
}

[[noreturn]] void Refuse(std::string_view url, const std::string& reason) {
    throw Failure(ExitCode::Usage,
                  "\"" + std::string(url) +
                      "\" cannot be used as the address of a "
                      "service: " +
                      reason,
                  "An address looks like https://host/app.");
}

} // namespace

bool IsLoopback(std::string_view host) {
    if (base::EqualsIgnoreCase(host, "localhost") || host == "[::1]") {
        return true;
    }
    // 127.0.0.0/8 in full dotted form.
    constexpr std::string_view prefix = "127.";
    if (!host.starts_with(prefix)) {
        return false;
    }
    const char* next = host.data() + prefix.size();
    const char* const end = host.data() + host.size();
    for (int part = 0; part < 3; ++part) {
        unsigned value = 0;
        const auto [rest, error] = std::from_chars(next, end, value);
        if (error != std::errc() || value > 255 || rest - next > 3) {
            return false;
        }
        const bool last = part == 2;
        if (last ? rest != end : rest == end || *rest != '.') {
            return false;
        }
        next = rest + 1;
    }
    return true;
}

std::string CheckServiceUrl(std::string_view url, bool insecureHttp) {
    const std::size_t schemeEnd = url.find("://");
    const std::string scheme = base::ToLower(url.substr(0, schemeEnd));
    if (schemeEnd == std::string_view::npos || (scheme != "http" && scheme != "https")) {
        Refuse(url, "it must begin with https:// or http://.");
    }
    if (!IsProper(url)) {
        Refuse(url, "it holds a character that addresses do not have.");
    }
    if (url.find_first_of("?#@") != std::string_view::npos) {
        Refuse(url, "it must hold no user name, query or fragment.");
    }
    const std::string_view rest = url.substr(schemeEnd + 3);
    const std::string_view authority = rest.substr(0, rest.find('/'));
    const std::size_t bracket = authority.rfind(']');
    const std::size_t colon = authority.find(':', bracket == std::string_view::npos ? 0 : bracket);
    const std::string_view host = authority.substr(0, colon);
    if (host.empty() || !IsPort(authority.substr(host.size()))) {
        Refuse(url, "it must name a host, and a port from 1 to 65535 if any.");
    }
    if (scheme == "http" && !IsLoopback(host) && !insecureHttp) {
        throw Failure(ExitCode::Usage,
                      "\"" + std::string(url) +
                          "\" would carry the password and all content "
                          "unencrypted over the network.",
                      "Use an https:// address, or --insecure-http if that is acceptable.");
    }
    return std::string(url.substr(0, url.find_last_not_of('/') + 1));
}

} // namespace brevint::cli
