#pragma once

#include "transfers/TransferState.h"

#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace transfers {

using TransferListener = std::function<void(const TransferProgress&)>;

/// Leads calls to a listener until the gate is closed. No lock is held during a call.
class ListenerGate {
public:
    explicit ListenerGate(TransferListener listener) : m_listener(std::move(listener)) {}
    ListenerGate(const ListenerGate&) = delete;
    ListenerGate& operator=(const ListenerGate&) = delete;

    /// Calls the listener, unless the gate is closed. What the listener throws goes no further.
    void Call(const TransferProgress& progress) noexcept;
    /// After it the listener is not called any more. Waits for calls under way on other threads.
    void Close() noexcept;

private:
    bool Enter() noexcept;
    void Leave() noexcept;

    const TransferListener m_listener;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_closed = false;
    std::vector<std::thread::id> m_callers;
};

} // namespace transfers
