#pragma once

#include "cli/output/Progress.h"
#include "cli/terminal/Interrupt.h"

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

/// Carries out a call of the library that blocks, on a thread of its own, while this one shows
/// `doing` as progress and watches for Ctrl-C and for the end of `timeout`. Throws a Failure that
/// begins with `summary` when either comes first: the call then goes on unheeded, so that `call`
/// must own all that it touches.
void AwaitCall(std::function<void()> call, const std::string& doing, const std::string& summary,
               std::chrono::seconds timeout);

/// Whether there may be a call that goes on unheeded. The program must then end without destroying
/// what that call uses.
bool IsCallLeftBehind();

} // namespace brevint::cli
