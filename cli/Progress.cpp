#include "cli/Progress.h"

#include "cli/SafeText.h"
#include "cli/Terminal.h"

#include <utf8.h>

#include <system_error>

namespace brevint::cli {

namespace {

/// The text's end, when all of it would break the line on a narrow terminal.
std::string Shorten(std::string text) {
    constexpr std::size_t most = 68;
    const std::size_t count = CharacterCount(text);
    if (count <= most) {
        return text;
    }
    auto rest = text.begin();
    utf8::unchecked::advance(rest, count - most);
    return "\u2026" + std::string(rest, text.end());
}

} // namespace

Progress::Progress(const std::string& text)
    : text_(Shorten(Neutralise(text))), start_(std::chrono::steady_clock::now()),
      visible_(Terminal::IsTerminal(Terminal::Stream::Error)) {}

Progress::~Progress() {
    try {
        if (width_ > 0) {
            Terminal::Write(Terminal::Stream::Error, "\r" + std::string(width_, ' ') + "\r");
        }
    } catch (const std::system_error&) {
        // A terminal that is gone needs no clean line.
    }
}

void Progress::Show() {
    if (!visible_) {
        return;
    }
    const auto elapsed =
        std::chrono::duration_cast<std::chrono::seconds>(std::chrono::steady_clock::now() - start_);
    const std::string line = text_ + " " + std::to_string(elapsed.count()) + " s";
    width_ = CharacterCount(line);
    Terminal::Write(Terminal::Stream::Error, "\r" + line);
}

} // namespace brevint::cli
