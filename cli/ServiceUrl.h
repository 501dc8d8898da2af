#pragma once

#include <string>
#include <string_view>

namespace brevint::cli {

/// The service's address as the program uses it: without "/" at its end. Throws a Failure when it
/// is not an http or https address, holds a user name, query or fragment, or when credentials would
/// travel unencrypted to another machine without `insecureHttp`.
std::string CheckServiceUrl(std::string_view url, bool insecureHttp);

/// True for a host (as it stands in an address) that can only be this machine.
bool IsLoopback(std::string_view host);

} // namespace brevint::cli
