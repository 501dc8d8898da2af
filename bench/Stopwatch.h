#pragma once

#include <chrono>

/// The time that a task counts. What happens while it stands still is preparation.
class Stopwatch {
public:
    using Clock = std::chrono::steady_clock;
    using Duration = Clock::duration;

    void Start() { m_since = Clock::now(); }
    void Stop() { Add(Clock::now() - m_since); }
    void Add(Duration time) { m_elapsed += time; }
    Duration Elapsed() const { return m_elapsed; }
    double Seconds() const { return std::chrono::duration<double>(m_elapsed).count(); }

private:
    Clock::time_point m_since;
    Duration m_elapsed{};
};
