#include "cli/Wait.h"

#include "cli/Failure.h"

#include <algorithm>

namespace brevint::cli {

void WaitUntil(const std::function<bool()>& done, const Patience& patience, Interrupt& interrupt,
               Progress& progress, const std::string& summary, const std::string& hint) {
    using Clock = std::chrono::steady_clock;
    using std::chrono::milliseconds;
    const auto deadline = Clock::now() + patience.timeout;
    for (milliseconds pause = patience.firstPause; !done();
         pause = std::min(pause + pause / 2, patience.longestPause)) {
        const auto left = std::chrono::ceil<milliseconds>(deadline - Clock::now());
        if (left <= milliseconds::zero()) {
            throw Failure(ExitCode::TimedOut,
                          summary + " Not finished after " +
                              std::to_string(patience.timeout.count()) + " s.",
                          hint.empty() ? "Allow more time with --timeout." : hint);
        }
        progress.Show();
        if (interrupt.Wait(std::min(pause, left))) {
            throw Failure(ExitCode::Interrupted, summary + " Interrupted.", hint);
        }
    }
}

} // namespace brevint::cli
