#pragma once

#include <chrono>
#include <string>

namespace brevint::cli {

/// One line on standard error that tells how long something has been going on. Shown on a terminal
/// only, and gone with this object.
class Progress {
public:
    explicit Progress(const std::string& text);
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    ~Progress();

    /// Brings the line up to date.
    void Show();

private:
    const std::string text_;
    std::chrono::steady_clock::time_point start_;
    bool visible_;
    std::size_t width_ = 0; ///< Characters that the line covers now.
};

} // namespace brevint::cli
