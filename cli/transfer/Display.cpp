#include "cli/transfer/Display.h"

#include "cli/output/SizeText.h"
#include "cli/terminal/Terminal.h"
#include "cli/transfer/Bars.h"

#include <nlohmann/json.hpp>

#include <string>

namespace brevint::cli {

namespace {

using namespace std::chrono_literals;

/// Tells of the whole from time to time.
class Lines final : public Display {
public:
    explicit Lines(const Output& out) : m_out(out) {}

    std::optional<std::chrono::milliseconds> Period() const override { return 10s; }

    void Show(const Overview& overview) override {
        const Status& all = overview.all;
        m_out.Remark(std::to_string(all.filesDone) + " of " + std::to_string(all.filesTotal) +
                     (all.filesTotal == 1 ? " file, " : " files, ") + Amounts(all));
    }

private:
    const Output& m_out;
};

const char* EventName(TransferState state) {
    switch (state) {
    case TransferState::Waiting: return "waiting";
    case TransferState::Running: return "running";
    case TransferState::Processing: return "processing";
    case TransferState::NeedsSignIn: return "needs-sign-in";
    case TransferState::Finished: return "finished";
    case TransferState::Failed: return "failed";
    case TransferState::Cancelled: break;
    }
    return "cancelled";
}

/// Tells programs of every change.
class Events final : public Display {
public:
    explicit Events(const Output& out) : m_out(out) {}

    bool WantsProgress() const override { return true; }

    void OnChange(const Status& status) override {
        nlohmann::json event = {{"event", EventName(status.state)},
                                {"item", status.name},
                                {"bytesDone", status.bytesDone},
                                {"filesDone", status.filesDone},
                                {"filesTotal", status.filesTotal}};
        event["bytesTotal"] =
            status.bytesTotal ? nlohmann::json(*status.bytesTotal) : nlohmann::json();
        event["bytesPerSecond"] =
            status.bytesPerSecond != 0 ? nlohmann::json(status.bytesPerSecond) : nlohmann::json();
        event["secondsLeft"] =
            status.timeLeft ? nlohmann::json(status.timeLeft->count()) : nlohmann::json();
        m_out.Event(event);
    }

private:
    const Output& m_out;
};

} // namespace

std::unique_ptr<Display> MakeDisplay(const Context& context) {
    if (context.Settings().events) {
        return std::make_unique<Events>(context.Out());
    }
    if (context.Settings().quiet) {
        return std::make_unique<Display>();
    }
    if (Terminal::IsCapable(Terminal::Stream::Error)) {
        return std::make_unique<Bars>(context.Out());
    }
    return std::make_unique<Lines>(context.Out());
}

} // namespace brevint::cli
