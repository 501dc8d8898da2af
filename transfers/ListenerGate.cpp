#include "transfers/ListenerGate.h"

#include "platform/Thread.h"

#include <algorithm>
#include <new>

namespace transfers {

void CallGate::Close() noexcept {
    const std::thread::id self = std::this_thread::get_id();
    std::unique_lock lock(m_mutex);
    m_closed = true;
    m_changed.wait(lock, [&] {
        return std::ranges::all_of(m_callers, [&](std::thread::id id) { return id == self; });
    });
}

bool CallGate::Enter() noexcept {
    platform::PassExitGate();
    const std::scoped_lock lock(m_mutex);
    if (m_closed) {
        return false;
    }
    try {
        m_callers.push_back(std::this_thread::get_id());
    } catch (const std::bad_alloc&) {
        return false; // this report is left out
    }
    return true;
}

void CallGate::Leave() noexcept {
    const std::scoped_lock lock(m_mutex);
    m_callers.erase(std::ranges::find(m_callers, std::this_thread::get_id()));
    m_changed.notify_all();
}

} // namespace transfers
