#pragma once

#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>
#include <utility>

namespace transfers {

/// Lets calls through until it is closed. No lock is held during a call.
class CallGate {
public:
    CallGate() = default;
    CallGate(const CallGate&) = delete;
    CallGate& operator=(const CallGate&) = delete;

    /// After it no call is let through any more. Waits for calls under way on other threads.
    void Close() noexcept;

protected:
    /// A call under way. It lies on the caller's stack, so that none is left out for lack of
    /// memory.
    struct Caller {
        const std::thread::id thread = std::this_thread::get_id();
        Caller* next = nullptr;
    };

    bool Enter(Caller& caller) noexcept;
    void Leave(const Caller& caller) noexcept;

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_closed = false;
    Caller* m_callers = nullptr; ///< A list.
};

/// Leads calls to a listener until it is closed.
template <class Progress>
class ListenerGate : public CallGate {
public:
    using Listener = std::function<void(const Progress&)>;

    explicit ListenerGate(Listener listener) : m_listener(std::move(listener)) {}

    /// Calls the listener, unless the gate is closed. What the listener throws goes no further.
    void Call(const Progress& progress) noexcept {
        Caller caller;
        if (!m_listener || !Enter(caller)) {
            return;
        }
        try {
            m_listener(progress);
        } catch (...) {
            // Nothing to do: a listener has no failure to report.
        }
        Leave(caller);
    }

private:
    const Listener m_listener;
};

} // namespace transfers
