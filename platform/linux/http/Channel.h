#pragma once

#include <curl/curl.h>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace platform {

/// Carries one exchange at a time and keeps the connections of earlier ones. Used by one thread at
/// a time. No easy handle serves two exchanges: libcurl 7.88 appends a continued header in the
/// second reply to the last header of the first, which it has freed.
class Channel {
public:
    Channel(); ///< throws std::bad_alloc
    ~Channel();
    Channel(const Channel&) = delete;
    Channel& operator=(const Channel&) = delete;

    /// Gets a new easy handle for an exchange with that scheme, host and port.
    void Open(const std::string& origin); ///< throws std::bad_alloc
    /// Frees the easy handle, and breaks off what is still under way.
    void Close() noexcept;

    CURL* Easy() const noexcept { return m_easy.get(); }
    CURLM* Multi() const noexcept { return m_multi.get(); }

    /// Starts the exchange that the easy handle is set up for.
    void Start(); ///< throws std::bad_alloc
    /// Does what can be done without waiting; returns the outcome once the exchange has ended.
    std::optional<CURLcode> Step() noexcept;
    void Wait(int milliseconds) noexcept;

    /// Whether a connection to that origin may still be open here.
    bool Knows(const std::string& origin) const noexcept;

private:
    struct MultiCleanup {
        void operator()(CURLM* multi) const noexcept { curl_multi_cleanup(multi); }
    };
    struct EasyCleanup {
        void operator()(CURL* easy) const noexcept { curl_easy_cleanup(easy); }
    };

    std::unique_ptr<CURLM, MultiCleanup> m_multi;
    std::unique_ptr<CURL, EasyCleanup> m_easy;
    bool m_started = false;
    std::vector<std::string> m_origins; ///< latest last
};

} // namespace platform
