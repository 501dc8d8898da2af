#pragma once

#include "transport/IStreamingExchange.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>

namespace calls {

/// Stops whatever a call's or a transfer's thread is at: an exchange, or a pause.
class StopSignal {
public:
    /// Any thread. Stays raised. Does not wait for the network.
    void Raise() noexcept;
    bool IsRaised() const noexcept { return m_raised; }

    /// Waits; false when it was raised meanwhile.
    bool Pause(std::chrono::milliseconds time);

    /// The exchange under way, for as long as this lives.
    class Guard {
    public:
        Guard(StopSignal& signal, IStreamingExchange& exchange);
        Guard(const Guard&) = delete;
        Guard& operator=(const Guard&) = delete;
        ~Guard();

    private:
        StopSignal& m_signal;
    };

private:
    std::atomic<bool> m_raised = false;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    IStreamingExchange* m_exchange = nullptr;
};

} // namespace calls
