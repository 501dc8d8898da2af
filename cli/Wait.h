#pragma once

#include "cli/Interrupt.h"
#include "cli/Progress.h"

#include <chrono>
#include <functional>

namespace brevint::cli {

/// How long something is waited for, and how often it is looked at meanwhile.
struct Patience {
    std::chrono::milliseconds firstPause;
    std::chrono::milliseconds longestPause; ///< Each pause is half as long again as the last one.
    std::chrono::seconds timeout;
};

enum class WaitResult { Done, TimedOut, Interrupted };

/// Calls `done` until it says so, at least once.
WaitResult WaitUntil(const std::function<bool()>& done, const Patience& patience,
                     Interrupt& interrupt, Progress& progress);

} // namespace brevint::cli
