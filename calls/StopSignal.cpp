#include "calls/StopSignal.h"

namespace calls {

void StopSignal::Raise() noexcept {
    const std::scoped_lock lock(m_mutex);
    m_raised = true;
    m_changed.notify_all();
    if (m_exchange) {
        m_exchange->Cancel();
    }
}

bool StopSignal::Pause(std::chrono::milliseconds time) {
    std::unique_lock lock(m_mutex);
    return !m_changed.wait_for(lock, time, [this] { return m_raised.load(); });
}

StopSignal::Guard::Guard(StopSignal& signal, IStreamingExchange& exchange) : m_signal(signal) {
    const std::scoped_lock lock(signal.m_mutex);
    signal.m_exchange = &exchange;
    if (signal.m_raised) {
        exchange.Cancel();
    }
}

StopSignal::Guard::~Guard() {
    const std::scoped_lock lock(m_signal.m_mutex);
    m_signal.m_exchange = nullptr;
}

} // namespace calls
