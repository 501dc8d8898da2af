#pragma once

/// @file
/// The cookie jar.

#include "brevint/IInternetCache.h"

#include <map>

/// Cookie names and their values.
using CookieParts = std::map<std::wstring, std::wstring>;

/// The platform's cookie jar. Has no state of its own; any thread may use it.
class BREVINT_API CInternetCache : public IInternetCache {
public:
    CInternetCache();
    ~CInternetCache() override;

    std::wstring GetCookie(const wchar_t* url) override;
    void SetCookie(const wchar_t* url, const wchar_t* cookie) override;
    void DeleteCookie(const wchar_t* url) override;

    /// True for the names of cookie attributes, in any letter case.
    bool IsReservedName(const std::wstring& name) const;
    /// Splits a cookie string into names and values, both trimmed; the later of two pairs with one
    /// name wins. Pieces without a name or without "=" are left out.
    void GetCookieParts(const std::wstring& cookie, CookieParts& parts) const;
};
