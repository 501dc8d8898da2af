#include "brevint/InternetCache.h"

#include "platform/WinInet.h"
#include "support/PlatformCookies.h"
#include "support/Text.h"

#include <algorithm>
#include <iterator>
#include <vector>

namespace {

constexpr const wchar_t* kExpired = L";expires = Sat,01-Jan-2000 00:00:00 GMT";

constexpr const wchar_t* kReservedNames[] = {L"expires", L"domain", L"path", L"secure",
                                             L"httponly"};

} // namespace

CInternetCache::CInternetCache() = default;

CInternetCache::~CInternetCache() = default;

std::wstring CInternetCache::GetCookie(const wchar_t* url) {
    return BaseHlpr::GetPlatformCookies(url);
}

void CInternetCache::SetCookie(const wchar_t* url, const wchar_t* cookie) {
    CookieParts parts;
    GetCookieParts(cookie ? cookie : L"", parts);
    for (const auto& [name, value] : parts) {
        if (!name.empty() && !IsReservedName(name)) {
            InternetSetCookieW(url, name.c_str(), value.c_str());
        }
    }
}

void CInternetCache::DeleteCookie(const wchar_t* url) {
    // The cookie without a name is not among those that the jar shows.
    InternetSetCookieW(url, L"", kExpired);
    CookieParts parts;
    GetCookieParts(GetCookie(url), parts);
    for (const auto& [name, value] : parts) {
        if (!name.empty() && !IsReservedName(name)) {
            InternetSetCookieW(url, name.c_str(), kExpired);
        }
    }
}

bool CInternetCache::IsReservedName(const std::wstring& name) const {
    const std::wstring lower = BaseHlpr::ToLower(name);
    return std::ranges::find(kReservedNames, lower) != std::end(kReservedNames);
}

void CInternetCache::GetCookieParts(const std::wstring& cookie, CookieParts& parts) const {
    std::vector<std::wstring> pieces;
    BaseHlpr::Split(cookie.c_str(), pieces, L";", false);
    for (const std::wstring& piece : pieces) {
        const std::size_t equals = piece.find(L'=');
        if (equals != std::wstring::npos && equals > 0) {
            const std::wstring name = BaseHlpr::Trim(piece.substr(0, equals).c_str());
            parts[name] = BaseHlpr::Trim(piece.substr(equals + 1).c_str());
        }
    }
}
