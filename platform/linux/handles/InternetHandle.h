#pragma once

#include "platform/linux/WinInet.h"
#include "platform/linux/http/HttpRequest.h"

#include <mutex>
#include <string>

namespace platform {

/// What a handle hands down to those opened on it afterwards.
struct HandleSettings {
    bool asynchronous = false;
    bool useProxy = true;
    std::string agent;
    Timeouts timeouts;
    INTERNET_STATUS_CALLBACK callback = nullptr;
};

/// What an HINTERNET stands for.
class InternetHandle {
public:
    InternetHandle(HandleSettings settings, DWORD_PTR context);
    virtual ~InternetHandle() = default;
    InternetHandle(const InternetHandle&) = delete;
    InternetHandle& operator=(const InternetHandle&) = delete;

    /// Called once by the handle table, before anybody else knows the handle.
    void SetId(HINTERNET id) noexcept { m_id = id; }

    HandleSettings Settings() const;
    void SetTimeouts(const Timeouts& timeouts);
    /// Returns the callback before.
    INTERNET_STATUS_CALLBACK SetCallback(INTERNET_STATUS_CALLBACK callback);

    /// Called once, when the handle has left the table. Ends in INTERNET_STATUS_HANDLE_CLOSING.
    virtual void Close() noexcept;

protected:
    /// Calls the status callback, if there are one and a context for it. No lock is held then.
    void Notify(DWORD status, void* information, DWORD length) noexcept;
    void NotifyClosed() noexcept;

private:
    HINTERNET m_id = nullptr;
    const DWORD_PTR m_context;
    mutable std::mutex m_mutex;
    HandleSettings m_settings; ///< under m_mutex
};

} // namespace platform
