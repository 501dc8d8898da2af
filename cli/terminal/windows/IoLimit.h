#pragma once

#include "support/windows/Handles.h"

#include <brevint/client/StopToken.h>

#include <chrono>
#include <memory>
#include <mutex>
#include <optional>

#include <windows.h>

namespace brevint::cli {

/// While it lives, what its thread reads or writes is broken off with ERROR_OPERATION_ABORTED when,
/// after the token was stopped, nothing has come of it for as long as `patience`; at once when no
/// timer is to be had then. Throws std::system_error when it cannot know its thread.
class IoLimit {
public:
    IoLimit(const StopToken& stop, std::chrono::milliseconds patience);
    IoLimit(const IoLimit&) = delete;
    IoLimit& operator=(const IoLimit&) = delete;
    ~IoLimit();

    /// Something has come of it: the time begins anew.
    void Renew();

private:
    struct Start {
        IoLimit* limit;
        void operator()() const;
    };
    struct TimerCloser {
        void operator()(PTP_TIMER timer) const noexcept;
    };

    static void CALLBACK BreakOff(PTP_CALLBACK_INSTANCE, void* limit, PTP_TIMER);

    const std::chrono::milliseconds m_patience;
    const HandlePtr m_thread;
    std::mutex m_mutex; ///< Guards the end. Held while breaking off, so that nothing newer is.
    std::chrono::steady_clock::time_point m_end;
    std::unique_ptr<TP_TIMER, TimerCloser> m_timer; ///< Made by the stop: it takes a thread.
    std::optional<StopCallback<Start>> m_onStop;    ///< Goes first: it starts the timer.
};

} // namespace brevint::cli
