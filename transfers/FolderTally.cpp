#include "transfers/FolderTally.h"

#include "brevint/ErrorCodes.h"
#include "calls/FailureText.h"
#include "support/Utf8.h"

#include <utility>

namespace transfers {

namespace {

/// "2,000"
std::wstring WithCommas(std::size_t number) {
    constexpr std::size_t kGroup = 3;
    std::wstring text = std::to_wstring(number);
    for (std::size_t end = text.size(); end > kGroup; end -= kGroup) {
        text.insert(end - kGroup, 1, L',');
    }
    return text;
}

} // namespace

TransferOutcome FinishedOutcome() {
    TransferOutcome outcome;
    outcome.code = ErrorCode::Success;
    return outcome;
}

TransferOutcome CancelledOutcome() {
    TransferOutcome outcome;
    outcome.code = ErrorCode::EmptyReply;
    outcome.failure = ExchangeFailure::Cancelled;
    outcome.text = calls::FailureText(ExchangeFailure::Cancelled);
    return outcome;
}

void FolderTally::Adopt(std::vector<FolderEntry> content) {
    for (FolderEntry& entry : content) {
        if (entry.action == FolderAction::Transfer) {
            ++m_progress.filesTotal;
            m_progress.total += entry.bytes == kUnknownSize ? 0 : entry.bytes;
        } else if (entry.action == FolderAction::Refuse) {
            CountFailed(m_tree.Size());
        }
        m_tree.Add(std::move(entry));
    }
}

void FolderTally::Refuse(std::size_t folder, const calls::Failure& failure) {
    m_tree[folder].Refuse(failure);
    CountFailed(folder);
}

void FolderTally::FinishFolder(std::size_t folder, std::string itemId) {
    m_tree[folder].state = TransferState::Finished;
    if (!itemId.empty()) {
        m_tree[folder].itemId = std::move(itemId);
    }
}

void FolderTally::Fail(std::size_t index, TransferOutcome outcome) {
    m_tree[index].state = TransferState::Failed;
    m_tree[index].outcome = std::make_unique<TransferOutcome>(std::move(outcome));
    CountFailed(index);
}

void FolderTally::TakeOver(std::size_t file, const Transfer& transfer) {
    FolderEntry& entry = m_tree[file];
    const TransferProgress progress = transfer.GetProgress();
    if (progress.done > entry.done) {
        m_progress.done += progress.done - std::exchange(entry.done, progress.done);
    }
    if (progress.total != kUnknownSize && progress.total != entry.bytes) {
        m_progress.total -= entry.bytes == kUnknownSize ? 0 : entry.bytes;
        m_progress.total += progress.total;
        entry.bytes = progress.total;
    }
    entry.state = progress.state;
    if (progress.state == TransferState::Finished) {
        const TransferOutcome& outcome = *transfer.GetOutcome();
        ++m_progress.filesDone;
        entry.itemId = Utf8::ToNarrow(outcome.itemId);
        entry.status = static_cast<std::uint16_t>(outcome.status);
        entry.isVerified = outcome.verified;
    } else if (progress.state == TransferState::Failed) {
        Fail(file, *transfer.GetOutcome());
    } else if (progress.state == TransferState::Cancelled) {
        entry.outcome = std::make_unique<TransferOutcome>(*transfer.GetOutcome());
    }
}

void FolderTally::CancelRest() {
    for (std::size_t i = 0; i < m_tree.Size(); ++i) {
        if (!IsFinal(m_tree[i].state)) {
            m_tree[i].state = TransferState::Cancelled;
        }
    }
}

bool FolderTally::IsReportDue(std::chrono::milliseconds interval) {
    return m_speed.Note(m_progress.done, interval);
}

void FolderTally::CountFailed(std::size_t index) {
    if (m_progress.failed++ == 0) {
        m_firstFailed = index;
    }
}

FolderProgress FolderTally::Progress() const {
    FolderProgress progress = m_progress;
    progress.entries = m_tree.Size() - 1;
    progress.bytesPerSecond = m_speed.BytesPerSecond();
    progress.secondsLeft = m_speed.SecondsFor(progress.done, progress.total);
    return progress;
}

TransferOutcome FolderTally::Outcome() const {
    if (m_progress.failed == 0) {
        return FinishedOutcome();
    }
    TransferOutcome outcome = *m_tree[m_firstFailed].outcome;
    outcome.text = WithCommas(m_progress.failed) + L" of " + WithCommas(m_tree.Size() - 1) +
                   L" files and folders could not be moved.";
    return outcome;
}

FolderEntryProgress FolderTally::ProgressOf(std::size_t index) const {
    const FolderEntry& entry = m_tree[index];
    return {.action = entry.action, .state = entry.state, .done = entry.done, .total = entry.bytes};
}

std::optional<TransferOutcome> FolderTally::OutcomeOf(std::size_t index) const {
    const FolderEntry& entry = m_tree[index];
    if (!IsFinal(entry.state)) {
        return std::nullopt;
    }
    TransferOutcome outcome;
    if (entry.outcome) {
        outcome = *entry.outcome;
    } else if (entry.state == TransferState::Cancelled) {
        outcome = CancelledOutcome();
    } else {
        outcome = FinishedOutcome();
        outcome.status = entry.status;
        outcome.verified = entry.isVerified;
    }
    outcome.localPath = m_tree.LocalPathOf(index);
    if (outcome.itemId.empty()) {
        outcome.itemId = Utf8::ToWide(entry.itemId);
    }
    return outcome;
}

} // namespace transfers
