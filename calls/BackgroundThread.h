#pragma once

#include <functional>

namespace calls {

/// Starts a thread that nobody waits for, and keeps the library's code loaded for it. False when
/// there is no thread to be had.
bool TryStartThread(std::function<void()> function);

} // namespace calls
