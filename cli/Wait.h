#pragma once

#include "cli/Interrupt.h"
#include "cli/Progress.h"

#include <chrono>
#include <functional>
#include <string>

namespace brevint::cli {

/// How long something is waited for, and how often it is looked at meanwhile.
struct Patience {
    std::chrono::milliseconds firstPause;
    std::chrono::milliseconds longestPause; ///< Each pause is half as long again as the last one.
    std::chrono::seconds timeout;
};

/// Calls `done` until it says so, at least once. Throws a Failure that begins with `summary` when
/// patience ends or Ctrl-C comes first; `hint` is then what to try.
void WaitUntil(const std::function<bool()>& done, const Patience& patience, Interrupt& interrupt,
               Progress& progress, const std::string& summary, const std::string& hint = {});

} // namespace brevint::cli
