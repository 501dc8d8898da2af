#pragma once

#include <atomic>
#include <curl/curl.h>
#include <mutex>

namespace platform {

/// Cancels a wait. The only part of a request that other threads may touch during its transfer.
class Cancellation {
public:
    /// Any thread. Stays raised.
    void Raise() noexcept;
    bool Raised() const noexcept { return m_raised; }

    /// The driving thread: the multi handle that Raise wakes, null when it is given up.
    void Watch(CURLM* multi) noexcept;

private:
    std::atomic<bool> m_raised = false;
    std::mutex m_mutex;
    CURLM* m_multi = nullptr;
};

} // namespace platform
