#pragma once

#include <functional>

namespace platform {

/// Starts a thread that nobody waits for. It leaves the process's signals to the application's own
/// threads, and lets the process exit while it runs, see ExitGate. Throws std::system_error when
/// there is none to be had.
void StartThread(std::function<void()> function);

/// To be called by such a thread before it calls the application.
void PassExitGate() noexcept;

} // namespace platform
