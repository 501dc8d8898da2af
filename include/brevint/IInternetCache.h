#pragma once

#include "brevint/Export.h"

#include <string>

/// The process's cookie jar, which every request uses too.
class BREVINT_INTERFACE IInternetCache {
public:
    virtual ~IInternetCache() = default;

    /// The cookies held for a URL, "name=value; name=value"; empty when there are none.
    virtual std::wstring GetCookie(const wchar_t* url) = 0;
    /// Stores every name=value pair of `cookie` for the URL, as cookies of this session. Attributes
    /// such as a path or an expiry date are not passed on.
    virtual void SetCookie(const wchar_t* url, const wchar_t* cookie) = 0;
    /// Expires every cookie that GetCookie shows for the URL.
    virtual void DeleteCookie(const wchar_t* url) = 0;
};
