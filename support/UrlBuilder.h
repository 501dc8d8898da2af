#pragma once

#include <optional>
#include <string>

/// Joins the service's address and a resource path with exactly one "/".
class UrlBuilder {
public:
    /// Sets the service's address; null stands for an empty one.
    void Init(const wchar_t* baseUrl);
    /// Sets the resource path, which may carry a query. It is not escaped.
    void SetPath(const wchar_t* path);
    /// The URL, or null when there is no address. Valid until the builder changes.
    const wchar_t* GetUrl();

private:
    std::wstring m_baseUrl;
    std::optional<std::wstring> m_path;
    std::wstring m_url;
};

namespace BaseHlpr {

/// The URL that UrlBuilder makes; empty when there is none.
std::wstring BuildUrl(const std::wstring& baseUrl, const std::wstring& path);

} // namespace BaseHlpr
