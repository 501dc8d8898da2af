#include "transfers/ListenerGate.h"

#include "platform/Thread.h"

namespace transfers {

void CallGate::Close() noexcept {
    const std::thread::id self = std::this_thread::get_id();
    std::unique_lock lock(m_mutex);
    m_closed = true;
    m_changed.wait(lock, [&] {
        const Caller* caller = m_callers;
        while (caller && caller->thread == self) {
            caller = caller->next;
        }
        return !caller;
    });
}

bool CallGate::Enter(Caller& caller) noexcept {
    platform::PassExitGate();
    const std::scoped_lock lock(m_mutex);
    if (m_closed) {
        return false;
    }
    caller.next = m_callers;
    m_callers = &caller;
    return true;
}

void CallGate::Leave(const Caller& caller) noexcept {
    const std::scoped_lock lock(m_mutex);
    Caller** link = &m_callers;
    while (*link != &caller) {
        link = &(*link)->next;
    }
    *link = caller.next;
    m_changed.notify_all();
}

} // namespace transfers
