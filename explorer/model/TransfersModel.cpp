#include "explorer/model/TransfersModel.h"

#include "explorer/model/ErrorText.h"
#include "explorer/resources/Resource.h"
#include "explorer/system/Formats.h"
#include "explorer/system/Text.h"

#include <algorithm>
#include <utility>

namespace brevint::explorer {

namespace {

std::wstring RunningText(const TransfersModel::Row& row) {
    const Progress& progress = row.progress;
    if (row.silence >= kLongSilence) {
        return Text(IDS_SILENT, {DurationText(row.silence)});
    }
    const std::wstring rate = Text(IDS_RATE, {SizeText(progress.bytesPerSecond)});
    return progress.timeLeft ? Text(IDS_RATE_AND_TIME_LEFT, {rate, DurationText(progress.timeLeft)})
                             : rate;
}

std::wstring FailureText(const TransfersModel::Row& row) {
    if (row.failures.empty()) {
        return Text(IDS_FAILED, {ErrorText(row.outcome.error)});
    }
    const auto& [path, error] = row.failures.front();
    return Text(IDS_FILES_FAILED, {NumberText(row.failures.size()), NumberText(row.filesTotal),
                                   DisplayText(Wide(path)), ErrorText(error)});
}

std::vector<FileFailure> Failures(const TransferGroup& group) {
    std::vector<FileFailure> failures;
    for (std::size_t i = 0; i < group.GetProgress().entryCount; ++i) {
        if (const Outcome outcome = group.GetEntryOutcome(i); outcome.error) {
            failures.push_back({group.GetEntry(i).path, outcome.error});
        }
    }
    return failures;
}

/// What was posted, or what is true by now unless that is the end, which is posted by itself: two
/// threads may have posted their states in the wrong order.
template <class Moving, class Posted>
Posted Newest(const Moving& moving, const Posted& posted) {
    const Posted now = moving.GetProgress();
    return IsFinal(posted.state) || IsFinal(now.state) ? posted : now;
}

} // namespace

void TransfersModel::Begin(const std::shared_ptr<Client>& client, TransferOrder order,
                           Ended ended) {
    if (!client) {
        return;
    }
    m_entries.push_back(std::make_unique<Entry>());
    Entry& entry = *m_entries.back();
    entry.row.order = std::move(order);
    entry.ended = std::move(ended);
    entry.client = client;
    if (m_changed) {
        m_changed(std::nullopt);
    }
    Start(entry);
}

void TransfersModel::Start(Entry& entry) {
    const TransferOrder& order = entry.row.order;
    const auto onChange = [this, &entry](const auto& progress) {
        OnProgress(entry, progress);
    };
    Client& client = *entry.client;
    switch (order.kind) {
    case TransferKind::Download:
        entry.transfer = client.Download(order.remoteId, order.local,
                                         {.onChange = onChange, .listedSize = order.listedSize});
        break;
    case TransferKind::Upload:
        entry.transfer = client.Upload(order.local, order.remoteId, {.onChange = onChange});
        break;
    case TransferKind::Replace:
        entry.transfer = client.Replace(order.remoteId, order.local, {.onChange = onChange});
        break;
    case TransferKind::DownloadFolder:
        entry.group = client.DownloadFolder(order.remoteId, order.local,
                                            {.onChange = onChange, .existing = Existing::Update});
        break;
    case TransferKind::UploadFolder:
        entry.group = client.UploadFolder(order.local, order.remoteId,
                                          {.onChange = onChange, .existing = Existing::Update});
        break;
    }
}

void TransfersModel::OnProgress(Entry& entry, const Progress& posted) {
    // What was posted before a cancel or an end may come after it.
    if (IsFinal(entry.row.progress.state)) {
        return;
    }
    const Progress progress = entry.transfer ? Newest(entry.transfer, posted) : posted;
    const std::uint64_t seen = entry.row.progress.bytesDone;
    if (progress.state != entry.row.progress.state) {
        entry.lastMove = {};
    }
    entry.row.progress = progress;
    entry.row.progress.bytesDone = seen; // Look may have seen more
    NoteBytes(entry, std::max(seen, progress.bytesDone));
    if (IsFinal(progress.state)) {
        entry.row.outcome = entry.group ? entry.group.GetOutcome() : entry.transfer.GetOutcome();
    }
    Tell(entry);
    if (IsFinal(progress.state) && entry.ended) {
        const Ended ended = entry.ended; // it may clear the entry
        const Outcome outcome = entry.row.outcome;
        ended(outcome);
    }
}

void TransfersModel::OnProgress(Entry& entry, const GroupProgress& posted) {
    const GroupProgress progress = entry.group ? Newest(entry.group, posted) : posted;
    entry.row.filesTotal = progress.filesTotal;
    NoteFiles(entry, progress.filesDone);
    if (progress.state == TransferState::Failed && entry.group) {
        entry.row.failures = Failures(entry.group);
    }
    OnProgress(entry, Progress{.state = progress.state,
                               .bytesDone = progress.bytesDone,
                               .bytesTotal = progress.bytesTotal,
                               .bytesPerSecond = progress.bytesPerSecond,
                               .timeLeft = progress.timeLeft});
}

void TransfersModel::NoteBytes(Entry& entry, std::uint64_t bytesDone) {
    const Clock::time_point now = Clock::now();
    if (entry.lastMove == Clock::time_point() || bytesDone != entry.row.progress.bytesDone) {
        entry.lastMove = now;
    }
    entry.row.progress.bytesDone = bytesDone;
    if (bytesDone > 0 && bytesDone == entry.row.progress.bytesTotal) {
        entry.lastMove = now; // no more is to move; the service is busy with it
    }
    entry.row.silence = std::chrono::duration_cast<std::chrono::seconds>(now - entry.lastMove);
}

void TransfersModel::NoteFiles(Entry& entry, std::size_t filesDone) {
    if (filesDone > entry.row.filesDone) {
        entry.row.filesDone = filesDone;
        entry.lastMove = {};
    }
}

void TransfersModel::Look() {
    for (const auto& entry : m_entries) {
        if (entry->row.progress.state != TransferState::Running) {
            continue;
        }
        if (entry->group) {
            const GroupProgress progress = entry->group.GetProgress();
            NoteFiles(*entry, progress.filesDone);
            NoteBytes(*entry, progress.bytesDone);
        } else {
            NoteBytes(*entry, entry->transfer.GetProgress().bytesDone);
        }
        Tell(*entry);
    }
}

void TransfersModel::Tell(const Entry& entry) {
    const auto place = std::ranges::find(m_entries, &entry, &std::unique_ptr<Entry>::get);
    if (m_changed && place != m_entries.end()) {
        m_changed(static_cast<std::size_t>(place - m_entries.begin()));
    }
}

void TransfersModel::Cancel(std::size_t index) {
    Entry& entry = *m_entries[index];
    if (entry.group) {
        entry.group.Cancel();
    } else if (entry.transfer) {
        entry.transfer.Cancel();
    }
}

void TransfersModel::CancelAll() {
    for (std::size_t i = 0; i < m_entries.size(); ++i) {
        Cancel(i);
    }
}

void TransfersModel::Leave() {
    for (const auto& entry : m_entries) {
        entry->row.isLeft = true;
    }
    CancelAll();
    if (m_changed) {
        m_changed(std::nullopt);
    }
}

void TransfersModel::Retry(std::size_t index, const std::shared_ptr<Client>& client) {
    Entry& entry = *m_entries[index];
    if (!client || !CanRetry(entry.row)) {
        return;
    }
    entry.client = client;
    entry.transfer = {};
    entry.group = {};
    entry.row = {.order = std::move(entry.row.order)};
    entry.lastMove = {};
    Start(entry);
    Tell(entry);
}

void TransfersModel::ClearEnded() {
    std::erase_if(m_entries, [](const auto& entry) { return IsFinal(entry->row.progress.state); });
    if (m_changed) {
        m_changed(std::nullopt);
    }
}

std::size_t TransfersModel::ActiveCount() const {
    return static_cast<std::size_t>(
        std::ranges::count_if(m_entries, [](const auto& entry) { return CanCancel(entry->row); }));
}

bool TransfersModel::NeedsSignIn() const {
    return std::ranges::any_of(m_entries, [](const auto& entry) {
        return entry->row.progress.state == TransferState::NeedsSignIn;
    });
}

std::wstring StateText(const TransfersModel::Row& row) {
    const bool isFolder = row.filesTotal > 0;
    switch (row.progress.state) {
    case TransferState::Waiting: return Text(IDS_WAITING);
    case TransferState::Running:
        return isFolder ? Text(IDS_FILES_RUNNING, {NumberText(row.filesDone),
                                                   NumberText(row.filesTotal), RunningText(row)})
                        : RunningText(row);
    case TransferState::Processing: return Text(IDS_PROCESSING);
    case TransferState::NeedsSignIn: return Text(IDS_NEEDS_SIGN_IN);
    case TransferState::Finished:
        return isFolder ? Text(IDS_FILES_FINISHED, {NumberText(row.filesDone)})
                        : Text(IDS_FINISHED);
    case TransferState::Failed: return FailureText(row);
    case TransferState::Cancelled:
        return Text(row.outcome.jobGoesOn ? IDS_CANCELLED_JOB_GOES_ON : IDS_CANCELLED);
    }
    return {};
}

std::wstring FailureDetails(const TransfersModel::Row& row) {
    if (row.failures.empty()) {
        return ErrorDetails(row.outcome.error);
    }
    std::wstring details;
    for (const auto& [path, error] : row.failures) {
        details += Text(IDS_FAILED_ITEM, {DisplayText(Wide(path)), ErrorText(error)}) + L"\r\n" +
                   ErrorDetails(error) + L"\r\n";
    }
    return details;
}

std::optional<unsigned> Percentage(const Progress& progress) {
    if (progress.state == TransferState::Finished) {
        return 100;
    }
    if (!progress.bytesTotal || *progress.bytesTotal == 0) {
        return std::nullopt;
    }
    return static_cast<unsigned>(100.0 * static_cast<double>(progress.bytesDone) /
                                 static_cast<double>(*progress.bytesTotal));
}

} // namespace brevint::explorer
