#include "cli/Wait.h"

#include <algorithm>

namespace brevint::cli {

WaitResult WaitUntil(const std::function<bool()>& done, const Patience& patience,
                     Interrupt& interrupt, Progress& progress) {
    using Clock = std::chrono::steady_clock;
    using std::chrono::milliseconds;
    const auto deadline = Clock::now() + patience.timeout;
    for (milliseconds pause = patience.firstPause; !done();
         pause = std::min(pause + pause / 2, patience.longestPause)) {
        const auto left = std::chrono::ceil<milliseconds>(deadline - Clock::now());
        if (left <= milliseconds::zero()) {
            return WaitResult::TimedOut;
        }
        progress.Show();
        if (interrupt.Wait(std::min(pause, left))) {
            return WaitResult::Interrupted;
        }
    }
    return WaitResult::Done;
}

} // namespace brevint::cli
