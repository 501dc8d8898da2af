#pragma once

#include <functional>
#include <thread>

namespace platform {

/// Starts a thread that nobody waits for; the end of the process ends it. Throws std::system_error
/// when there is none to be had.
inline void StartThread(std::function<void()> function) {
    std::thread(std::move(function)).detach();
}

/// To be called by such a thread before it calls the application.
inline void PassExitGate() noexcept {}

} // namespace platform
