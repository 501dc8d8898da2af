#pragma once

#include <cerrno>
#include <cstdint>
#include <functional>
#include <memory>
#include <process.h>
#include <system_error>
#include <utility>

#include <windows.h>

namespace platform {

/// Starts a thread that nobody waits for; the end of the process ends it. Throws std::system_error
/// when there is none to be had.
///
/// By the C runtime's own call: the winpthreads library of mingw-w64 10 sometimes loses a
/// std::thread that is detached while it starts, whose function then never runs.
inline void StartThread(std::function<void()> function) {
    auto owned = std::make_unique<std::function<void()>>(std::move(function));
    const auto run = [](void* argument) -> unsigned {
        const std::unique_ptr<std::function<void()>> mine(
            static_cast<std::function<void()>*>(argument));
        (*mine)();
        return 0;
    };
    const std::uintptr_t thread = _beginthreadex(nullptr, 0, run, owned.get(), 0, nullptr);
    if (thread == 0) {
        throw std::system_error(errno, std::generic_category());
    }
    static_cast<void>(owned.release()); // it is the thread's now
    CloseHandle(reinterpret_cast<HANDLE>(thread));
}

/// To be called by such a thread before it calls the application.
inline void PassExitGate() noexcept {}

} // namespace platform
