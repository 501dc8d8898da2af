#include "platform/linux/http/Cancellation.h"

namespace platform {

void Cancellation::Raise() noexcept {
    m_raised = true;
    const std::lock_guard lock(m_mutex);
    if (m_multi != nullptr) {
        curl_multi_wakeup(m_multi);
    }
}

void Cancellation::Watch(CURLM* multi) noexcept {
    const std::lock_guard lock(m_mutex);
    m_multi = multi;
}

} // namespace platform
