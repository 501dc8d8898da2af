#include "platform/linux/system/Thread.h"

#include "platform/linux/system/ExitGate.h"

#include <csignal>
#include <thread>
#include <utility>

namespace platform {

namespace {

// Blocks all signals of the calling thread, which a thread that it starts inherits.
class SignalsBlocked {
public:
    SignalsBlocked() {
        sigset_t all;
        sigfillset(&all);
        pthread_sigmask(SIG_SETMASK, &all, &m_before);
    }
    SignalsBlocked(const SignalsBlocked&) = delete;
    SignalsBlocked& operator=(const SignalsBlocked&) = delete;
    ~SignalsBlocked() { pthread_sigmask(SIG_SETMASK, &m_before, nullptr); }

private:
    sigset_t m_before{};
};

} // namespace

void StartThread(std::function<void()> function) {
    ExitGate::Install();
    const SignalsBlocked blocked;
    std::thread([function = std::move(function)] {
        ExitGate::Guard();
        function();
    }).detach();
}

void PassExitGate() noexcept {
    ExitGate::Pass();
}

} // namespace platform
