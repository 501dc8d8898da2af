#pragma once

#include "brevint/ICheckComplete.h"

#include <chrono>
#include <thread>

namespace brevint::test {

/// A caller without anything else to do. False after a minute.
inline bool AwaitComplete(const ICheckComplete& response) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::minutes(1);
    while (!response.IsComplete() && std::chrono::steady_clock::now() < deadline) {
        std::this_thread::yield();
    }
    return response.IsComplete();
}

} // namespace brevint::test
