#pragma once

#include <curl/curl.h>
#include <memory>
#include <string>

namespace platform {

/// A URL in libcurl's own parser, so that there are no two opinions about what a text means.
class Url {
public:
    /// Of a text that is no absolute URL: one without parts.
    explicit Url(const std::string& address); ///< throws std::bad_alloc

    /// Takes an absolute URL, or a reference relative to what was taken before. False, and
    /// unchanged, if it is neither.
    bool Resolve(const std::string& reference) noexcept;
    void Remove(CURLUPart part) noexcept;
    CURLU* Handle() const noexcept { return m_url.get(); }
    /// Empty if there is none. The whole URL has a port even where it is the scheme's own.
    std::string Part(CURLUPart part) const;
    /// The host in small letters, an IPv6 address without its brackets.
    std::string Host() const;

private:
    struct Cleanup {
        void operator()(CURLU* url) const noexcept { curl_url_cleanup(url); }
    };

    std::unique_ptr<CURLU, Cleanup> m_url;
};

/// Whether the host, as Url::Host gives it, is this machine by its name or address.
bool IsLoopback(const std::string& host);

} // namespace platform
