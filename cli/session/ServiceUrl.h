#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brevint::cli {

/// Where a request to an address goes.
struct Origin {
    bool isSecure = false; ///< https
    std::string host;      ///< In small letters; an IPv6 address stands in brackets.
    unsigned port = 0;
};

/// The origin of an absolute http or https address; nothing for any other text, and for one that
/// somebody could read otherwise.
std::optional<Origin> ParseOrigin(std::string_view url);

/// True where nobody on the network can read along: with https, or on this machine.
bool IsConfidential(const Origin& origin);

/// The service's address as the program uses it: without "/" at its end. Throws a Failure when it
/// is not an http or https address, holds a user name, query or fragment, or when credentials would
/// travel unencrypted to another machine without `insecureHttp`.
std::string CheckServiceUrl(std::string_view url, bool insecureHttp);

/// The addresses of all folders on the way to the service, its own last, each with "/" at its end:
/// "https://host/", "https://host/app/". `url` is one that CheckServiceUrl has returned.
std::vector<std::string> FoldersOf(std::string_view url);

} // namespace brevint::cli
