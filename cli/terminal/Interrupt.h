#pragma once

#include <brevint/client/StopToken.h>

#include <memory>

namespace brevint::cli {

/// While it lives, Ctrl-C and other requests to end stop its token instead of ending the program,
/// so that what was begun can be cleaned up. One at a time.
class Interrupt {
public:
    Interrupt();
    Interrupt(const Interrupt&) = delete;
    Interrupt& operator=(const Interrupt&) = delete;
    ~Interrupt();

    StopToken Token() const { return m_source.get_token(); }

private:
    struct Watch;

    StopSource m_source;
    std::unique_ptr<Watch> m_watch;
};

} // namespace brevint::cli
