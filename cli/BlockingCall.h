#pragma once

#include <chrono>
#include <functional>
#include <string>

namespace brevint::cli {

/// Carries out a call of the library that blocks, on a thread of its own, while this one shows
/// `doing` as progress and watches for Ctrl-C and for the end of `timeout`. Throws a Failure that
/// begins with `summary` when either comes first: the call then goes on unheeded, so that `call`
/// must own all that it touches.
void AwaitCall(std::function<void()> call, const std::string& doing, const std::string& summary,
               std::chrono::seconds timeout);

/// Whether there may be a call that goes on unheeded. The program must then end without tidying up
/// behind that call's back.
bool IsCallLeftBehind();

} // namespace brevint::cli
