#pragma once

#include <string>

namespace platform {

/// Whether anybody can have a host directly below that domain, as below "org" or "co.uk", so that a
/// cookie for all of it would reach strangers. The domain is in small letters.
bool IsPublicSuffix(const std::string& domain);

} // namespace platform
