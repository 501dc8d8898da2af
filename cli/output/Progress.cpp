#include "cli/output/Progress.h"

#include "cli/terminal/DisplayWidth.h"
#include "cli/terminal/SafeText.h"
#include "cli/terminal/Terminal.h"

#include <algorithm>
#include <system_error>

namespace brevint::cli {

namespace {

using namespace std::chrono_literals;

constexpr Terminal::Stream kStream = Terminal::Stream::Error;

} // namespace

Progress::Progress(const std::string& text)
    : m_text(Neutralise(text)), m_start(std::chrono::steady_clock::now()),
      m_visible(!text.empty() && Terminal::IsCapable(kStream)) {}

Progress::~Progress() {
    try {
        if (m_width > 0) {
            Terminal::Write(kStream, "\r" + std::string(m_width, ' ') + "\r");
        }
    } catch (const std::system_error&) {
        // Nothing to do: a terminal that is gone needs no clean line.
    }
}

void Progress::Show() {
    const auto elapsed = std::chrono::steady_clock::now() - m_start;
    if (!m_visible || elapsed < 200ms) {
        return;
    }
    const std::string time =
        " " + std::to_string(std::chrono::duration_cast<std::chrono::seconds>(elapsed).count()) +
        " s";
    // The line must not break: what has been broken cannot be taken back.
    const std::size_t most = Terminal::Width(kStream) - 1;
    const std::string line = ShortenFront(m_text, most - std::min(most, time.size())) + time;
    const std::size_t width = DisplayWidth(line);
    const std::string rest(std::max(m_width, width) - width, ' ');
    m_width = width;
    Terminal::Write(kStream, "\r" + line + rest + std::string(rest.size(), '\b'));
}

} // namespace brevint::cli
