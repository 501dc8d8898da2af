#include "platform/linux/urls/UrlCracker.h"

#include "base/Ascii.h"

#include <algorithm>

namespace platform {

namespace {

using std::wstring_view;

struct KnownScheme {
    wstring_view name;
    INTERNET_SCHEME scheme;
    INTERNET_PORT port;
};

constexpr KnownScheme kKnownSchemes[] = {
    {L"http", INTERNET_SCHEME_HTTP, INTERNET_DEFAULT_HTTP_PORT},
    {L"https", INTERNET_SCHEME_HTTPS, INTERNET_DEFAULT_HTTPS_PORT},
    {L"ftp", INTERNET_SCHEME_FTP, INTERNET_DEFAULT_FTP_PORT},
    {L"file", INTERNET_SCHEME_FILE, INTERNET_INVALID_PORT_NUMBER},
};

// An escape would be another host to libcurl than to whoever compares names.
bool IsHost(wstring_view host) {
    const bool isAddress = host.starts_with(L'[');
    return !host.empty() && std::ranges::none_of(host, [isAddress](wchar_t c) {
        return c <= L' ' || c == L'\x7F' || (c == L'%' && !isAddress);
    });
}

bool IsSchemeName(wstring_view text) {
    return !text.empty() && base::IsLetter(text.front()) &&
           std::ranges::all_of(text, [](wchar_t c) {
               return base::IsLetterOrDigit(c) || c == L'+' || c == L'-' || c == L'.';
           });
}

bool ParsePort(wstring_view digits, INTERNET_PORT& port) {
    unsigned value = 0;
    for (const wchar_t c : digits) {
        if (!base::IsDigit(c) || (value = value * 10 + static_cast<unsigned>(c - L'0')) > 0xFFFF) {
            return false;
        }
    }
    port = static_cast<INTERNET_PORT>(value);
    return true;
}

} // namespace

DWORD CrackUrl(wstring_view url, UrlParts& parts) noexcept {
    const std::size_t colon = url.find(L':');
    if (colon == wstring_view::npos || !IsSchemeName(url.substr(0, colon))) {
        return ERROR_INTERNET_UNRECOGNIZED_SCHEME;
    }
    parts.schemeName = url.substr(0, colon);
    for (const KnownScheme& known : kKnownSchemes) {
        if (base::EqualsIgnoreCase(parts.schemeName, known.name)) {
            parts.scheme = known.scheme;
            parts.port = known.port;
        }
    }

    wstring_view rest = url.substr(colon + 1);
    if (!rest.starts_with(L"//")) {
        return ERROR_INTERNET_INVALID_URL;
    }
    rest.remove_prefix(2);
    // A backslash counts as the slash that it becomes on the wire, or the text after it could
    // pose as the host.
    wstring_view authority = rest.substr(0, rest.find_first_of(L"/\\?#"));
    parts.path = rest.substr(authority.size());
    authority.remove_prefix(authority.rfind(L'@') + 1);

    const std::size_t hostEnd =
        authority.starts_with(L'[') ? authority.find(L']') : authority.find(L':');
    if (authority.starts_with(L'[') && hostEnd == wstring_view::npos) {
        return ERROR_INTERNET_INVALID_URL;
    }
    const std::size_t hostLength = authority.starts_with(L'[') ? hostEnd + 1 : hostEnd;
    parts.host = authority.substr(0, hostLength);
    authority.remove_prefix(parts.host.size());
    if (!IsHost(parts.host)) {
        return ERROR_INTERNET_INVALID_URL;
    }
    if (authority.empty() || authority == L":") {
        return ERROR_SUCCESS;
    }
    const bool valid = authority.front() == L':' && ParsePort(authority.substr(1), parts.port);
    return valid ? ERROR_SUCCESS : ERROR_INTERNET_INVALID_URL;
}

} // namespace platform
