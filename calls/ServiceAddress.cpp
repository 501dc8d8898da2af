#include "calls/ServiceAddress.h"

#include "base/Ascii.h"

#include <algorithm>
#include <charconv>

namespace calls {

namespace {

bool IsProper(std::string_view url) {
    return std::ranges::all_of(url, [](char c) {
        return c > 0x20 && c < 0x7F &&
               std::string_view("\\\"<>^`{|}").find(c) == std::string_view::npos;
    });
}

/// Whether that is a host to every reader of addresses: a name, or an IPv6 address in brackets.
bool IsHost(std::string_view host) {
    const bool isAddress = host.starts_with('[') && host.ends_with(']');
    const std::string_view name = isAddress ? host.substr(1, host.size() - 2) : host;
    return !name.empty() && std::ranges::all_of(name, [isAddress](char c) {
        return base::IsLetterOrDigit(c) ||
               std::string_view(isAddress ? ":." : "-._").find(c) != std::string_view::npos;
    });
}

/// Reads the port after a host, "" or ":1" to ":65535".
bool ParsePort(std::string_view text, unsigned& port) {
    if (text.empty()) {
        return true;
    }
    const char* const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data() + 1, end, port);
    return text.front() == ':' && error == std::errc() && rest == end && port >= 1 && port <= 65535;
}

/// True for a host that can only be this machine.
bool IsLoopback(std::string_view host) {
    if (host == "localhost" || host == "[::1]") {
        return true;
    }
    // 127.0.0.0/8 in full dotted form.
    constexpr std::string_view kPrefix = "127.";
    if (!host.starts_with(kPrefix)) {
        return false;
    }
    const char* next = host.data() + kPrefix.size();
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

} // namespace

std::optional<Origin> ParseOrigin(std::string_view url) {
    const std::size_t schemeEnd = url.find("://");
    const std::string scheme = base::ToLower(url.substr(0, schemeEnd));
    if (schemeEnd == std::string_view::npos || (scheme != "http" && scheme != "https")) {
        return std::nullopt;
    }
    const std::string_view rest = url.substr(schemeEnd + 3);
    const std::string authority = base::ToLower(rest.substr(0, rest.find_first_of("/?#")));
    const std::size_t bracket = authority.rfind(']');
    const std::size_t colon = authority.find(':', bracket == std::string::npos ? 0 : bracket);
    const bool isSecure = scheme == "https";
    Origin origin{isSecure, authority.substr(0, colon), isSecure ? 443U : 80U};
    const std::string_view port = std::string_view(authority).substr(origin.host.size());
    if (!IsHost(origin.host) || !ParsePort(port, origin.port)) {
        return std::nullopt;
    }
    return origin;
}

bool IsConfidential(const Origin& origin) {
    return origin.isSecure || IsLoopback(origin.host);
}

std::string FaultOf(std::string_view url, bool insecureHttp) {
    if (!IsProper(url)) {
        return "it holds a character that addresses do not have.";
    }
    if (url.find_first_of("?#@") != std::string_view::npos) {
        return "it must hold no user name, query or fragment.";
    }
    const std::optional<Origin> origin = ParseOrigin(url);
    if (!origin) {
        return "it must begin with https:// or http://, and name a host, and a port from 1 to "
               "65535 if any.";
    }
    if (!IsConfidential(*origin) && !insecureHttp) {
        return "passwords and all content would travel unencrypted over the network.";
    }
    return {};
}

std::vector<std::string> FoldersOf(std::string_view url) {
    const std::string whole = std::string(url) + "/";
    std::vector<std::string> folders;
    for (std::size_t slash = whole.find('/', whole.find("://") + 3); slash != std::string::npos;
         slash = whole.find('/', slash + 1)) {
        folders.push_back(whole.substr(0, slash + 1));
    }
    return folders;
}

} // namespace calls
