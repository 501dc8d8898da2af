#include "cli/BlockingCall.h"

#include "cli/Wait.h"

#include <atomic>
#include <future>
#include <memory>
#include <thread>
#include <utility>

namespace brevint::cli {

namespace {

std::atomic<bool> leftBehind = false;

} // namespace

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
