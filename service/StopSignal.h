#pragma once

#include <memory>

namespace brevint::service {

/// Notes the signals by which a program is asked to end (SIGINT, SIGTERM, the console's Ctrl-C),
/// from its construction on.
class StopSignal {
public:
    StopSignal();
    StopSignal(const StopSignal&) = delete;
    StopSignal& operator=(const StopSignal&) = delete;
    ~StopSignal();

    /// Returns as soon as one has come.
    void Wait();

private:
    struct Listener;
    std::unique_ptr<Listener> m_listener;
};

} // namespace brevint::service
