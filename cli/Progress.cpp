#include "cli/Progress.h"

#include "cli/DisplayWidth.h"
#include "cli/SafeText.h"
#include "cli/Terminal.h"

#include <algorithm>
#include <system_error>

namespace brevint::cli {

namespace {

using namespace std::chrono_literals;

constexpr Terminal::Stream kStream = Terminal::Stream::Error;

} // namespace

Progress::Progress(const std::string& text)
    : text_(Neutralise(text)), start_(std::chrono::steady_clock::now()),
      visible_(!text.empty() && Terminal::IsCapable(kStream)) {}

Progress::~Progress() {
    try {
        if (width_ > 0) {
            Terminal::Write(kStream, "\r" + std::string(width_, ' ') + "\r");
        }
    } catch (const std::system_error&) {
        // A terminal that is gone needs no clean line.
    }
}

void Progress::Show() {
    const auto elapsed = std::chrono::steady_clock::now() - start_;
    if (!visible_ || elapsed < 200ms) {
        return;
    }
    const std::string time =
        " " + std::to_string(std::chrono::duration_cast<std::chrono::seconds>(elapsed).count()) +
        " s";
    // The line must not break: what has been broken cannot be taken back.
    const std::size_t most = Terminal::Width(kStream) - 1;
    const std::string line = ShortenFront(text_, most - std::min(most, time.size())) + time;
    const std::size_t width = DisplayWidth(line);
    const std::string rest(std::max(width_, width) - width, ' ');
    width_ = width;
    Terminal::Write(kStream, "\r" + line + rest + std::string(rest.size(), '\b'));
}

} // namespace brevint::cli
