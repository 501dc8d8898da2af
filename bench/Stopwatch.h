#pragma once

#include <chrono>

/// The time that a task counts. What happens while it stands still is preparation.
class Stopwatch {
public:
    void Start() { m_since = Clock::now(); }
    void Stop() { m_elapsed += Clock::now() - m_since; }
    double Seconds() const { return std::chrono::duration<double>(m_elapsed).count(); }

private:
    using Clock = std::chrono::steady_clock;
    Clock::time_point m_since;
    Clock::duration m_elapsed{};
};
