#pragma once

#include <curl/curl.h>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace platform {

// A pair of curl handles that carries one transfer at a time and keeps the connections of earlier
// ones. Used by one thread at a time.
class Channel {
public:
    Channel(); // throws std::bad_alloc
    ~Channel();
    Channel(const Channel&) = delete;
    Channel& operator=(const Channel&) = delete;

    CURL* Easy() const noexcept { return m_easy.get(); }
    CURLM* Multi() const noexcept { return m_multi.get(); }

    // Starts the transfer that the easy handle is set up for.
    void Start(); // throws std::bad_alloc
    // Does what can be done without waiting; returns the outcome once the transfer has ended.
    std::optional<CURLcode> Step() noexcept;
    void Wait(int milliseconds) noexcept;
    // Breaks off what is still under way and forgets all options.
    void Reset() noexcept;

    // Whether a connection to that scheme, host and port may still be open here.
    bool Knows(const std::string& origin) const noexcept;
    void Remember(const std::string& origin);

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
    std::vector<std::string> m_origins; // latest last
};

} // namespace platform
