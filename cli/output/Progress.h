#pragma once

#include <chrono>
#include <cstddef>
#include <string>

namespace brevint::cli {

/// One line on standard error that tells how long something has been going on. Shown on a terminal
/// only, once there is something to wait for, and gone with this object.
class Progress {
public:
    /// `text` is followed by the time; without a text nothing is shown.
    explicit Progress(const std::string& text);
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    ~Progress();

    /// Brings the line up to date.
    void Show();

private:
    const std::string m_text;
    const std::chrono::steady_clock::time_point m_start;
    const bool m_visible;
    std::size_t m_width = 0; ///< Columns that the line covers now.
};

} // namespace brevint::cli
