#include "platform/Thread.h"

#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>

namespace brevint::test {
namespace {

TEST(Threads, AreNeverLostOnTheirWay) {
    struct Count {
        std::mutex mutex;
        std::condition_variable changed;
        int value = 0;
    };
    constexpr int kThreads = 2'000;
    const auto count = std::make_shared<Count>(); // a thread may be the last to let go of it
    for (int i = 0; i < kThreads; ++i) {
        platform::StartThread([count] {
            const std::scoped_lock lock(count->mutex);
            ++count->value;
            count->changed.notify_all();
        });
    }
    std::unique_lock lock(count->mutex);
    EXPECT_TRUE(count->changed.wait_for(lock, std::chrono::minutes(1), [&] {
        return count->value == kThreads;
    })) << count->value;
}

} // namespace
} // namespace brevint::test
