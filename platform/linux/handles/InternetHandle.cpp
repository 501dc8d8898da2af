#include "platform/linux/handles/InternetHandle.h"

#include "platform/linux/system/ExitGate.h"

#include <utility>

namespace platform {

InternetHandle::InternetHandle(HandleSettings settings, DWORD_PTR context)
    : m_context(context), m_settings(std::move(settings)) {}

HandleSettings InternetHandle::Settings() const {
    const std::lock_guard lock(m_mutex);
    return m_settings;
}

void InternetHandle::SetTimeouts(const Timeouts& timeouts) {
    const std::lock_guard lock(m_mutex);
    m_settings.timeouts = timeouts;
}

INTERNET_STATUS_CALLBACK InternetHandle::SetCallback(INTERNET_STATUS_CALLBACK callback) {
    const std::lock_guard lock(m_mutex);
    return std::exchange(m_settings.callback, callback);
}

void InternetHandle::Close() noexcept {
    NotifyClosed();
}

void InternetHandle::Notify(DWORD status, void* information, DWORD length) noexcept {
    INTERNET_STATUS_CALLBACK callback = nullptr;
    {
        const std::lock_guard lock(m_mutex);
        callback = m_settings.callback;
    }
    if (callback != nullptr && m_context != 0) {
        ExitGate::Pass();
        callback(m_id, m_context, status, information, length);
    }
}

void InternetHandle::NotifyClosed() noexcept {
    HINTERNET id = m_id;
    Notify(INTERNET_STATUS_HANDLE_CLOSING, static_cast<void*>(&id), sizeof id);
}

} // namespace platform
