#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace calls {

/// Where a request to an address goes.
struct Origin {
    bool isSecure = false; ///< https
    std::string host;      ///< In small letters; an IPv6 address stands in brackets.
    unsigned port = 0;

    bool operator==(const Origin&) const = default;
};

/// The origin of an absolute http or https address; nothing for any other text, and for one that
/// somebody could read otherwise.
std::optional<Origin> ParseOrigin(std::string_view url);

/// True where nobody on the network can read along: with https, or on this machine.
bool IsConfidential(const Origin& origin);

/// Why a text cannot be the address of a service, as the rest of a sentence; empty when it can.
/// Without `insecureHttp` http is for this machine only.
std::string FaultOf(std::string_view url, bool insecureHttp);

/// The addresses of all folders on the way to a service, its own last, each with "/" at its end:
/// "https://host/", "https://host/app/". The address has no fault.
std::vector<std::string> FoldersOf(std::string_view url);

} // namespace calls
