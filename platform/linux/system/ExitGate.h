#pragma once

#include <atomic>

namespace platform {

/// Lets the process exit while exchanges are under way. Threads of this layer touch libcurl (and
/// the TLS library behind it, which frees its state at exit) only inside the gate. Once exit has
/// begun the gate is shut: a thread that comes to it stays there until the process has gone.
class ExitGate {
public:
    /// Before the first thread is started.
    static void Install();
    /// Declares the calling thread one of this layer's own. Other threads pass the gate freely:
    /// whoever exits while his own calls are running is on his own.
    static void Guard() noexcept;

    /// To pass before a call into the application.
    static void Pass() noexcept { const Passage passage; }

    class Passage {
    public:
        Passage() noexcept;
        ~Passage();
        Passage(const Passage&) = delete;
        Passage& operator=(const Passage&) = delete;
    };
};

} // namespace platform
