#pragma once

#include "brevint/client.h"

#include <string>

namespace brevint::explorer {

/// What went wrong and what the user can do about it, for people.
std::wstring ErrorText(const Error& error);

/// What else is known of it, for those who want to know or to report it.
std::wstring ErrorDetails(const Error& error);

} // namespace brevint::explorer
