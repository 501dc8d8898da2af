#pragma once

#include <chrono>

namespace brevint::cli {

/// While it lives, Ctrl-C and other requests to end are noted instead of ending the program, so
/// that what was begun can be cleaned up. They nest, on one thread.
class Interrupt {
public:
    Interrupt();
    Interrupt(const Interrupt&) = delete;
    Interrupt& operator=(const Interrupt&) = delete;
    ~Interrupt();

    /// True once a request has come; waits for one that long.
    bool Wait(std::chrono::milliseconds time);
};

} // namespace brevint::cli
