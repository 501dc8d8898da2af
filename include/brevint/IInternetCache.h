#pragma once

#include "brevint/Export.h"

#include <string>

/// The process's cookie jar, which every request uses too.
class BREVINT_INTERFACE IInternetCache {
public:
    virtual ~IInternetCache() = default;

    /// The cookies that a request for the URL carries, "name=value; name=value"; empty when there
    /// are none. HttpOnly cookies are carried, but not shown.
    virtual std::wstring GetCookie(const wchar_t* url) = 0;
    /// Stores every name=value pair of `cookie` as a cookie of this session, for the URL's host and
    /// folder, which is its path up to the last "/". Attributes such as a path or an expiry date
    /// are not passed on. A pair that the jar refuses is left out.
    virtual void SetCookie(const wchar_t* url, const wchar_t* cookie) = 0;
    /// Expires every cookie that GetCookie shows for the URL and that was set for exactly the URL's
    /// host and folder, as SetCookie does. One that a reply set for another folder or for a whole
    /// domain stays: what was set with "Path=/" goes with an address of that host whose path is
    /// "/".
    virtual void DeleteCookie(const wchar_t* url) = 0;
};
