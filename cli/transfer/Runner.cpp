#include "cli/transfer/Runner.h"

#include "cli/output/SizeText.h"

#include <algorithm>
#include <ranges>
#include <utility>

namespace brevint::cli {

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

/// After as many entries that wait there is none that runs: a folder's files have their turns in
/// order.
constexpr std::size_t kMostAhead = 100;

void Cancel(Moving& moving) {
    std::visit([](auto& transfer) { transfer.Cancel(); }, moving);
}

Outcome OutcomeOf(const Moving& moving) {
    return std::visit([](const auto& transfer) { return transfer.GetOutcome(); }, moving);
}

TransferState StateOf(const Moving& moving) {
    return std::visit([](const auto& transfer) { return transfer.GetProgress().state; }, moving);
}

bool IsActive(TransferState state) {
    return state == TransferState::Running || state == TransferState::Processing;
}

/// A session that ends at once may do so before anybody has seen it run.
bool HasBegun(TransferState state) {
    return IsActive(state) || state == TransferState::NeedsSignIn;
}

bool IsPlanned(TransferState state) {
    return IsActive(state) || state == TransferState::Finished || state == TransferState::Failed;
}

void Mark(std::set<std::size_t>& numbers, std::size_t number, bool belongs) {
    if (belongs) {
        numbers.insert(number);
    } else {
        numbers.erase(number);
    }
}

Failure Interrupted() {
    return {ExitCode::Interrupted, "Interrupted.",
            "The same command goes on with what has come, where the service allows it."};
}

} // namespace

Runner::Runner(Context& context, Outcomes& outcomes)
    : m_context(context), m_outcomes(outcomes),
      m_patience(std::chrono::seconds(context.Settings().timeoutSeconds)),
      m_display(MakeDisplay(context)),
      m_nextShow(Clock::now() + m_display->Period().value_or(0ms)) {}

Runner::~Runner() = default;

void Runner::Begin(Move move) {
    const std::size_t number = m_board.Add(move.name);
    m_tasks.push_back({std::move(move), {}, {}});
    Task& task = m_tasks.back();
    try {
        task.moving = m_context.Ask(task.move.summary, [&](Client& client, const CallOptions&) {
            return task.move.begin(client, {&m_board, number});
        });
        m_open.insert(number);
    } catch (...) {
        m_outcomes.Settle(task.move.number, ItemOutcome{.failure = CurrentFailure()});
    }
}

void Runner::Finish() {
    const StopToken stop = m_context.Stop();
    const auto wake =
        m_display->WantsProgress() ? Board::Wake::ByAllChanges : Board::Wake::ByStates;
    while (!m_open.empty()) {
        TakeChanges();
        if (stop.stop_requested() && !m_isStopped) {
            CancelAll(Interrupted());
        } else if (!m_waiting.empty() && !m_isStopped) {
            HelpWithSignIn();
        } else if (!m_open.empty()) {
            CancelStalled();
            Show();
            // A stopped token would end the wait at once, again and again.
            m_board.Wait(m_isStopped ? StopToken() : stop, NextDeadline(), wake);
        }
    }
    m_display->Hide();
    if (m_neverBegun > 0) {
        m_context.Out().Remark(std::to_string(m_neverBegun) + " more had not begun.");
    }
}

void Runner::TakeChanges() {
    for (const std::size_t number : m_board.TakeChanges()) {
        if (!m_open.contains(number)) {
            continue;
        }
        Task& task = m_tasks[number];
        Status status = m_board.Get(number);
        // Two threads may have noted their states in the wrong order.
        status.state = StateOf(task.moving);
        m_display->OnChange(status);
        task.hasBegun = task.hasBegun || HasBegun(status.state);
        if (task.move.onPlanned && IsPlanned(status.state) &&
            !std::exchange(task.isPlanned, true)) {
            m_display->Hide();
            task.move.onPlanned(std::get<TransferGroup>(task.moving));
        }
        if (status.bytesResumed != 0 && !std::exchange(task.isResumptionTold, true) &&
            !m_context.Settings().quiet) {
            m_display->Hide();
            m_context.Out().Remark(status.name + ": " + FormatSize(status.bytesResumed) +
                                   " had come before; it goes on from there.");
        }
        Mark(m_active, number, IsActive(status.state));
        Mark(m_waiting, number, status.state == TransferState::NeedsSignIn);
        if (status.state == TransferState::Processing && task.move.endsWhenSent) {
            Cancel(task.moving);
        }
        if (IsFinal(status.state)) {
            Settle(number);
        }
    }
}

void Runner::Settle(std::size_t number) {
    const Task& task = m_tasks[number];
    const Outcome outcome = OutcomeOf(task.moving);
    const bool isSent = task.move.endsWhenSent && outcome.jobGoesOn && !outcome.jobId.empty();
    ItemOutcome result;
    if (outcome.state == TransferState::Cancelled && task.stopped) {
        result.failure = *task.stopped;
        result.failure->summary = task.move.summary + " " + result.failure->summary;
        result.isToldOfFailure = task.hasBegun;
        m_neverBegun += task.hasBegun ? 0 : 1;
    } else if (!outcome && !isSent) {
        result.failure = FailureOf(task.move.summary, outcome.error);
    }
    m_display->Hide();
    try {
        task.move.conclude(task.moving, outcome, result);
    } catch (...) {
        result.failure = CurrentFailure();
    }
    m_outcomes.Settle(task.move.number, result);
    m_open.erase(number);
}

void Runner::HelpWithSignIn() {
    m_display->Hide();
    try {
        m_context.SignInAgain();
        // What goes on is told by its next change.
        m_waiting.clear();
    } catch (...) {
        CancelAll(CurrentFailure());
    }
}

void Runner::CancelAll(const Failure& reason) {
    m_isStopped = true;
    // From the last one on, so that none takes the place of one that is cancelled.
    for (const std::size_t number : m_open | std::views::reverse) {
        m_tasks[number].stopped = reason;
        Cancel(m_tasks[number].moving);
    }
}

void Runner::CancelStalled() {
    const Clock::time_point now = Clock::now();
    for (const std::size_t number : m_active) {
        if (now - m_board.LastProgress(number) >= m_patience) {
            m_tasks[number].stopped =
                Failure(ExitCode::TimedOut,
                        "For " + std::to_string(m_context.Settings().timeoutSeconds) +
                            " s there has been no progress.",
                        "Allow more time with --timeout.");
            Cancel(m_tasks[number].moving);
        }
    }
}

Clock::time_point Runner::NextDeadline() const {
    Clock::time_point deadline = Clock::now() + 1h;
    for (const std::size_t number : m_active) {
        deadline = std::min(deadline, m_board.LastProgress(number) + m_patience);
    }
    return m_display->Period() ? std::min(deadline, m_nextShow) : deadline;
}

void Runner::Show() {
    const auto period = m_display->Period();
    const Clock::time_point now = Clock::now();
    if (period && now >= m_nextShow) {
        m_nextShow = now + *period;
        m_display->Show(TakeOverview());
    }
}

Overview Runner::TakeOverview() {
    Overview overview;
    Status& all = overview.all;
    all.state = TransferState::Running;
    all.filesTotal = 0;
    all.bytesTotal = 0;
    m_board.ForEach([&](const Status& status) {
        all.filesDone += status.filesDone;
        all.filesTotal += status.filesTotal;
        all.bytesDone += status.bytesDone;
        *all.bytesTotal += status.bytesTotal.value_or(status.bytesDone);
        all.bytesPerSecond += IsActive(status.state) ? status.bytesPerSecond : 0;
    });
    all.name = std::to_string(all.filesDone) + " of " + std::to_string(all.filesTotal) + " files";
    if (all.bytesPerSecond != 0) {
        const std::uint64_t left = *all.bytesTotal - std::min(*all.bytesTotal, all.bytesDone);
        all.timeLeft = std::chrono::seconds(static_cast<std::int64_t>(left / all.bytesPerSecond));
    }
    for (const std::size_t number : m_active) {
        if (std::holds_alternative<TransferGroup>(m_tasks[number].moving)) {
            AddRunningEntries(m_tasks[number], overview.running);
        } else {
            overview.running.push_back(m_board.Get(number));
        }
    }
    return overview;
}

void Runner::AddRunningEntries(Task& task, std::vector<Status>& running) const {
    const auto& group = std::get<TransferGroup>(task.moving);
    const std::size_t count = group.GetProgress().entryCount;
    std::size_t& first = task.firstOpenEntry;
    std::size_t found = 0;
    std::size_t waiting = 0;
    for (std::size_t i = first;
         i < count && found < m_context.Settings().concurrent && waiting < kMostAhead; ++i) {
        const GroupEntry entry = group.GetEntry(i);
        if (i == first && IsFinal(entry.state)) {
            ++first;
        }
        waiting += entry.state == TransferState::Waiting ? 1 : 0;
        if (entry.state == TransferState::Running && entry.action == EntryAction::Transfer) {
            Status status;
            status.name = task.move.name + "/" + entry.path;
            status.state = entry.state;
            status.bytesDone = entry.bytesDone;
            status.bytesTotal = entry.bytesTotal;
            running.push_back(std::move(status));
            ++found;
        }
    }
}

} // namespace brevint::cli
