#include "cli/service/Wait.h"

#include "cli/output/Failure.h"

#include <algorithm>
#include <atomic>
#include <future>
#include <memory>
#include <thread>
#include <utility>

namespace brevint::cli {

namespace {

std::atomic<bool> leftBehind = false;

} // namespace

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

void AwaitCall(std::function<void()> call, const std::string& doing, const std::string& summary,
               std::chrono::seconds timeout) {
    using namespace std::chrono_literals;
    std::packaged_task<void()> task(std::move(call));
    std::future<void> end = task.get_future();
    Interrupt interrupt;
    Progress progress(doing);
    std::thread thread(std::move(task));
    try {
        WaitUntil([&end] { return end.wait_for(0s) == std::future_status::ready; },
                  {2ms, 100ms, timeout}, interrupt, progress, summary);
    } catch (...) {
        thread.detach();
        leftBehind = true;
        throw;
    }
    thread.join();
    end.get();
}

bool IsCallLeftBehind() {
    return leftBehind;
}

} // namespace brevint::cli
