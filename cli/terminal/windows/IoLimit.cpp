#include "cli/terminal/windows/IoLimit.h"

#include <system_error>

namespace brevint::cli {

namespace {

using Clock = std::chrono::steady_clock;

HandlePtr ThisThread() {
    HANDLE thread = nullptr;
    DuplicateHandle(GetCurrentProcess(), GetCurrentThread(), GetCurrentProcess(), &thread, 0, FALSE,
                    DUPLICATE_SAME_ACCESS);
    return HandlePtr(thread);
}

} // namespace

IoLimit::IoLimit(const StopToken& stop, std::chrono::milliseconds patience)
    : m_patience(patience), m_thread(ThisThread()) {
    if (!m_thread) {
        throw std::system_error(static_cast<int>(GetLastError()), std::system_category());
    }
    m_onStop.emplace(stop, Start{this});
}

IoLimit::~IoLimit() = default;

void IoLimit::Renew() {
    const std::scoped_lock lock(m_mutex);
    m_end = Clock::now() + m_patience;
}

void IoLimit::Start::operator()() const {
    limit->Renew();
    limit->m_timer.reset(CreateThreadpoolTimer(&BreakOff, limit, nullptr));
    if (!limit->m_timer) {
        CancelSynchronousIo(limit->m_thread.get());
        return;
    }
    // Again and again, because what is to be broken off may not have begun when the time is over.
    FILETIME atOnce = {};
    constexpr DWORD kPeriod = 20; // milliseconds
    SetThreadpoolTimer(limit->m_timer.get(), &atOnce, kPeriod, 0);
}

void IoLimit::TimerCloser::operator()(PTP_TIMER timer) const noexcept {
    SetThreadpoolTimer(timer, nullptr, 0, 0);
    WaitForThreadpoolTimerCallbacks(timer, TRUE);
    CloseThreadpoolTimer(timer);
}

void CALLBACK IoLimit::BreakOff(PTP_CALLBACK_INSTANCE, void* limit, PTP_TIMER) {
    auto* const self = static_cast<IoLimit*>(limit);
    const std::scoped_lock lock(self->m_mutex);
    if (Clock::now() >= self->m_end) {
        CancelSynchronousIo(self->m_thread.get());
    }
}

} // namespace brevint::cli
