#pragma once

#include "platform/linux/WinInet.h"

#include <string_view>

namespace platform {

/// The parts of an absolute URL, as views into its text.
struct UrlParts {
    INTERNET_SCHEME scheme = INTERNET_SCHEME_UNKNOWN;
    std::wstring_view schemeName;
    std::wstring_view host; ///< without user name and port, with the brackets of an IPv6 address
    INTERNET_PORT port = INTERNET_INVALID_PORT_NUMBER; ///< the scheme's own where the text has none
    std::wstring_view path;                            ///< with query and fragment
};

/// Returns ERROR_SUCCESS, ERROR_INTERNET_UNRECOGNIZED_SCHEME for a text without a scheme or
/// ERROR_INTERNET_INVALID_URL for one without a host, with blanks, controls or escapes in its host,
/// or with a port that is none.
DWORD CrackUrl(std::wstring_view url, UrlParts& parts) noexcept;

} // namespace platform
