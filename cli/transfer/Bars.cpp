#include "cli/transfer/Bars.h"

#include "cli/output/SizeText.h"
#include "cli/terminal/DisplayWidth.h"
#include "cli/terminal/SafeText.h"
#include "cli/terminal/Terminal.h"

#include <algorithm>

namespace brevint::cli {

namespace {

using namespace std::chrono_literals;

constexpr Terminal::Stream kStream = Terminal::Stream::Error;

/// More would push the screen away.
constexpr std::size_t kMostBars = 8;

/// "0:05", "12:34", "1:02:03"
std::string FormatTime(std::chrono::seconds time) {
    const auto twoDigits = [](std::int64_t number) {
        return (number < 10 ? "0" : "") + std::to_string(number);
    };
    const std::int64_t seconds = time.count();
    const std::string end = ":" + twoDigits(seconds % 60);
    return seconds < 3600
               ? std::to_string(seconds / 60) + end
               : std::to_string(seconds / 3600) + ":" + twoDigits(seconds / 60 % 60) + end;
}

/// How much of the whole there is, in parts of `scale`.
std::uint64_t Part(const Status& status, std::uint64_t scale) {
    if (!status.bytesTotal || *status.bytesTotal == 0) {
        return 0;
    }
    const std::uint64_t done = std::min(status.bytesDone, *status.bytesTotal);
    const double part = static_cast<double>(done) / static_cast<double>(*status.bytesTotal);
    return static_cast<std::uint64_t>(part * static_cast<double>(scale));
}

/// Blanks up to that width.
std::string Padded(const std::string& text, std::size_t columns) {
    return text + std::string(columns - std::min(columns, DisplayWidth(text)), ' ');
}

} // namespace

std::string Percentage(const Status& status) {
    if (!status.bytesTotal || *status.bytesTotal == 0) {
        return "    ";
    }
    const std::string number = std::to_string(Part(status, 100));
    return std::string(3 - number.size(), ' ') + number + "%";
}

std::string Amounts(const Status& status) {
    if (status.state == TransferState::Processing) {
        return "sent, being processed";
    }
    std::string text = FormatSize(status.bytesDone);
    if (status.bytesTotal) {
        text += " of " + FormatSize(*status.bytesTotal);
    }
    if (status.bytesPerSecond != 0) {
        text += ", " + FormatSize(status.bytesPerSecond) + "/s";
    }
    if (status.timeLeft) {
        text += ", " + FormatTime(*status.timeLeft) + " left";
    }
    return text;
}

std::string BarLine(const Status& status, std::size_t columns) {
    constexpr std::size_t kShortestName = 10;
    constexpr std::size_t kShortestBar = 12;
    constexpr std::size_t kLongestBar = 40;
    constexpr std::size_t kNumbers = 45; // what Amounts usually needs
    const std::string percentage = " " + Percentage(status);
    std::string numbers = "  " + Amounts(status);
    if (columns < kShortestName + percentage.size() + DisplayWidth(numbers)) {
        numbers.clear();
    }
    std::size_t rest = columns - std::min(columns, percentage.size());
    rest -= std::min(rest, numbers.empty() ? 0 : std::max(kNumbers, DisplayWidth(numbers)));
    const bool hasBar = rest >= kShortestName + kShortestBar;
    const std::size_t bar = hasBar ? std::min(kLongestBar, rest / 2) : 0;
    const std::size_t name = rest - bar;
    std::string line = Padded(ShortenFront(Neutralise(status.name), name), name);
    if (hasBar) {
        constexpr std::size_t kFrame = 3; // a blank and the brackets
        const std::size_t cells = bar - kFrame;
        const auto full = static_cast<std::size_t>(Part(status, cells));
        line += " [" + std::string(full, '#') + std::string(cells - full, '.') + "]";
    }
    return columns < percentage.size() ? std::string() : line + percentage + numbers;
}

Bars::~Bars() {
    Hide();
}

std::optional<std::chrono::milliseconds> Bars::Period() const {
    return 100ms;
}

void Bars::Show(const Overview& overview) {
    // The last column stays free: what is written there breaks the line on some terminals.
    const std::size_t columns = Terminal::Width(kStream) - 1;
    std::vector<std::string> lines;
    for (const Status& status : overview.running) {
        if (lines.size() == kMostBars) {
            break;
        }
        lines.push_back(BarLine(status, columns));
    }
    if (overview.all.filesTotal > 1) {
        lines.push_back(BarLine(overview.all, columns));
    }
    std::string text = TakeAway();
    m_widths.clear();
    for (const std::string& line : lines) {
        text += line + "\n";
        m_widths.push_back(DisplayWidth(line));
    }
    m_out.Draw(text);
}

void Bars::Hide() {
    if (!m_widths.empty()) {
        m_out.Draw(TakeAway());
        m_widths.clear();
    }
}

std::string Bars::TakeAway() const {
    // A terminal that has become narrower since has broken the lines.
    const std::size_t columns = std::max<std::size_t>(1, Terminal::Width(kStream));
    std::size_t rows = 0;
    for (const std::size_t width : m_widths) {
        rows += std::max<std::size_t>(1, (width + columns - 1) / columns);
    }
    return rows == 0 ? std::string() : "\r\x1b[" + std::to_string(rows) + "A\x1b[J";
}

} // namespace brevint::cli
