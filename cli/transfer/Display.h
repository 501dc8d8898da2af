#pragma once

#include "cli/run/Context.h"
#include "cli/transfer/Board.h"

#include <chrono>
#include <memory>
#include <vector>

namespace brevint::cli {

/// All that is on its way, at one moment.
struct Overview {
    std::vector<Status> running;
    Status all;
};

/// Shows on standard error how transfers go. Used by the main thread only.
class Display {
public:
    Display() = default;
    Display(const Display&) = delete;
    Display& operator=(const Display&) = delete;
    virtual ~Display() = default;

    /// How often Show is to be called; none: never.
    virtual std::optional<std::chrono::milliseconds> Period() const { return std::nullopt; }
    virtual void Show(const Overview&) {}

    /// Takes away what stands in the way of a line.
    virtual void Hide() {}

    /// Whether OnChange is to be called for progress, and not for new states only.
    virtual bool WantsProgress() const { return false; }
    virtual void OnChange(const Status&) {}
};

/// Bars on a terminal, lines elsewhere, events or nothing if that was asked for.
std::unique_ptr<Display> MakeDisplay(const Context& context);

} // namespace brevint::cli
