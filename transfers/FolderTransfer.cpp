#include "transfers/FolderTransfer.h"

#include "brevint/ErrorCodes.h"
#include "calls/BackgroundThread.h"
#include "transfers/Attempts.h"

#include <algorithm>
#include <iterator>
#include <new>
#include <utility>

namespace transfers {

using calls::Failure;
using calls::FailureKind;

namespace {

/// Transfers of a group that the queue has at a time: more than can run, fewer than take memory.
constexpr std::size_t kMostInQueue = 64;

bool IsWorthAnotherAttempt(const Failure& failure) {
    return (failure.kind == FailureKind::NoConnection &&
            failure.connection != ExchangeFailure::CertificateNotTrusted) ||
           failure.kind == FailureKind::Unavailable || failure.kind == FailureKind::TimedOut;
}

/// A failure that says nothing about other folders.
bool ConcernsOneFolder(const Failure& failure) {
    constexpr FailureKind kKinds[] = {FailureKind::NotAllowed, FailureKind::NotFound,
                                      FailureKind::Exists, FailureKind::Refused,
                                      FailureKind::LocalFile};
    return std::ranges::find(kKinds, failure.kind) != std::end(kKinds);
}

Failure ParentNotMade() {
    Failure failure;
    failure.kind = FailureKind::Refused;
    failure.text = L"Its folder could not be made.";
    return failure;
}

} // namespace

FolderTransfer::FolderTransfer(std::shared_ptr<const Service> service,
                               std::shared_ptr<TransferQueue> queue,
                               std::unique_ptr<const FolderPlan> plan, FolderListener listener)
    : m_service(std::move(service)), m_queue(std::move(queue)), m_plan(std::move(plan)),
      m_gate(std::move(listener)), m_tally(m_plan->Request().localPath, m_plan->Root()) {
    m_outcome.localPath = m_plan->Request().localPath;
    m_outcome.itemId = m_plan->Request().folderId;
}

void FolderTransfer::Begin() {
    m_queue->Join(shared_from_this());
    StartThread();
}

void FolderTransfer::StartThread() {
    if (!calls::TryStartThread([self = shared_from_this()] { self->Work(); })) {
        FailForMemory();
    }
}

void FolderTransfer::Work() try {
    Failure failure;
    do {
        {
            const std::scoped_lock lock(m_mutex);
            m_hasSignedIn = false;
        }
        failure = Advance();
    } while (failure.kind == FailureKind::NotSignedIn && !NeedsSignIn());
    if (failure.kind == FailureKind::NotSignedIn) {
        Tell();
    } else if (failure && !m_stop.IsRaised()) {
        Stop(TransferState::Failed, OutcomeOf(failure));
    }
} catch (const std::bad_alloc&) {
    FailForMemory();
}

bool FolderTransfer::NeedsSignIn() {
    const std::scoped_lock lock(m_mutex);
    m_needsSignIn = !m_hasSignedIn;
    UpdateState();
    return m_needsSignIn;
}

Failure FolderTransfer::Advance() {
    if (Failure failure = Plan(); failure || m_stop.IsRaised()) {
        return failure;
    }
    if (m_plan->Request().planOnly) {
        End(TransferState::Finished, FinishedOutcome());
        return {};
    }
    bool isFirst = false;
    {
        const std::scoped_lock lock(m_mutex);
        isFirst = !std::exchange(m_isPlanned, true);
        UpdateState();
    }
    if (isFirst) {
        Tell();
    }
    const Failure failure = MakeFolders();
    if (!failure) {
        Feed();
    }
    return failure;
}

Failure FolderTransfer::Plan() {
    const FolderTree& tree = m_tally.Tree();
    for (; m_explored < tree.Size() && !m_stop.IsRaised(); ++m_explored) {
        if (!tree[m_explored].isFolder || tree[m_explored].action == FolderAction::Refuse) {
            continue;
        }
        std::vector<FolderEntry> content;
        Failure failure = Attempt([&](const calls::CallContext& at) {
            content.clear();
            return m_plan->Explore(at, tree, m_explored, content);
        });
        if (failure && (m_explored == FolderTree::kRoot || !ConcernsOneFolder(failure))) {
            return failure;
        }
        const std::scoped_lock lock(m_mutex);
        if (m_isStopping) {
            return {};
        }
        if (failure) {
            m_tally.Refuse(m_explored, failure);
        } else {
            m_tally.Adopt(std::move(content));
        }
    }
    return {};
}

Failure FolderTransfer::Attempt(const Call& call) {
    Attempts attempts(m_service->Settings());
    bool isRepeated = false;
    for (;;) {
        const Failure failure = call({*m_service, m_stop, m_service->Timeouts()});
        // It may have been sent with a session that somebody has replaced since.
        if (failure.kind == FailureKind::NotAllowed && !std::exchange(isRepeated, true)) {
            continue;
        }
        const auto pause = IsWorthAnotherAttempt(failure) ? attempts.NextPause({}) : std::nullopt;
        if (!pause || !m_stop.Pause(*pause)) {
            return failure;
        }
    }
}

Failure FolderTransfer::MakeFolders() {
    for (; m_made < m_tally.Tree().Size() && !m_stop.IsRaised(); ++m_made) {
        if (m_tally.Tree()[m_made].action != FolderAction::MakeFolder) {
            continue;
        }
        if (Failure failure = MakeFolder(m_made)) {
            return failure;
        }
        Feed();
        Tell();
    }
    return {};
}

Failure FolderTransfer::MakeFolder(std::size_t folder) {
    const FolderTree& tree = m_tally.Tree();
    const auto lacksParent = [&] {
        const std::scoped_lock lock(m_mutex);
        return folder != FolderTree::kRoot && tree.ParentOf(folder).state == TransferState::Failed;
    };
    std::string itemId;
    Failure failure = lacksParent() ? ParentNotMade() : Attempt([&](const calls::CallContext& at) {
        return m_plan->MakeFolder(at, tree, folder, itemId);
    });
    if (failure && (folder == FolderTree::kRoot || !ConcernsOneFolder(failure))) {
        return failure;
    }
    const std::scoped_lock lock(m_mutex);
    if (IsFinal(tree[folder].state)) {
        return {}; // the group has been cancelled meanwhile
    }
    if (failure) {
        m_tally.Fail(folder, OutcomeOf(failure));
    } else {
        m_tally.FinishFolder(folder, std::move(itemId));
    }
    return {};
}

void FolderTransfer::Feed() {
    {
        const std::scoped_lock lock(m_mutex);
        m_hasRoom = true;
        if (std::exchange(m_isFeeding, true)) {
            return; // a transfer that ends at once would lead here again and again
        }
    }
    for (;;) {
        if (const std::shared_ptr<Transfer> transfer = NextTransfer()) {
            m_queue->Add(transfer);
            continue;
        }
        std::unique_lock lock(m_mutex);
        if (std::exchange(m_hasRoom, false)) {
            continue;
        }
        m_isFeeding = false;
        if (m_isPlanned && !m_isStopping && m_next == m_tally.Tree().Size() && m_running.empty()) {
            TransferOutcome result = m_tally.Outcome();
            lock.unlock();
            const bool isSuccess = result.code == ErrorCode::Success;
            End(isSuccess ? TransferState::Finished : TransferState::Failed, std::move(result));
        }
        return;
    }
}

std::shared_ptr<Transfer> FolderTransfer::NextTransfer() {
    const std::scoped_lock lock(m_mutex);
    const FolderTree& tree = m_tally.Tree();
    const bool isHeld = !m_isPlanned || m_isStopping || m_state != TransferState::Running;
    for (; !isHeld && m_next < tree.Size() && m_running.size() < kMostInQueue; ++m_next) {
        if (IsFinal(tree[m_next].state)) {
            continue;
        }
        if (tree[m_next].isFolder) {
            break; // it is made before anything is put into it
        }
        if (tree.ParentOf(m_next).state == TransferState::Failed) {
            m_tally.Fail(m_next, OutcomeOf(ParentNotMade()));
            continue;
        }
        auto transfer = m_plan->MakeTransfer(
            m_service, tree, m_next,
            [self = shared_from_this(), file = m_next](const TransferProgress& progress) {
                self->OnTransfer(file, progress.state);
            });
        m_running.emplace(m_next++, Running{transfer});
        return transfer;
    }
    return nullptr;
}

void FolderTransfer::OnTransfer(std::size_t file, TransferState state) try {
    if (state == TransferState::Finished) {
        m_plan->OnArrived(m_tally.Tree(), file);
    }
    bool hasChanged = false;
    bool isTold = false;
    {
        const std::scoped_lock lock(m_mutex);
        const TransferState before = m_state;
        hasChanged = TakeOver(file) || before != m_state;
        const bool isDue = m_tally.IsReportDue(m_service->Settings().reportInterval);
        isTold = !m_isStopping && (isDue || hasChanged);
    }
    if (isTold) {
        Tell();
    }
    if (hasChanged) {
        Feed();
    }
} catch (const std::bad_alloc&) {
    FailForMemory();
}

void FolderTransfer::FailForMemory() {
    TransferOutcome outcome; // without a text, which would take memory
    outcome.kind = FailureKind::OutOfMemory;
    Stop(TransferState::Failed, std::move(outcome));
}

bool FolderTransfer::TakeOver(std::size_t file) {
    const auto place = m_running.find(file);
    if (place == m_running.end()) {
        return false; // another thread has told of its end
    }
    // Asked for now: what this thread was told may be older than what another one has told.
    m_tally.TakeOver(file, *place->second.transfer);
    const TransferState state = m_tally.Tree()[file].state;
    place->second.needsSignIn = state == TransferState::NeedsSignIn;
    if (IsFinal(state)) {
        m_running.erase(place);
    }
    UpdateState();
    return IsFinal(state);
}

void FolderTransfer::UpdateState() {
    if (IsFinal(m_state)) {
        return;
    }
    const bool needsSignIn =
        m_needsSignIn || std::ranges::any_of(m_running, [](const auto& running) {
            return running.second.needsSignIn;
        });
    m_state = needsSignIn   ? TransferState::NeedsSignIn
              : m_isPlanned ? TransferState::Running
                            : TransferState::Waiting;
    m_changed.notify_all();
}

void FolderTransfer::OnSignedIn() {
    {
        const std::scoped_lock lock(m_mutex);
        m_hasSignedIn = true;
        if (!std::exchange(m_needsSignIn, false) || m_isStopping) {
            return;
        }
        UpdateState();
    }
    Tell();
    StartThread();
}

void FolderTransfer::Cancel() {
    const auto keep = shared_from_this();
    Stop(TransferState::Cancelled, CancelledOutcome());
}

void FolderTransfer::LetGo() {
    const auto keep = shared_from_this();
    Cancel();
    m_gate.Close();
}

void FolderTransfer::Stop(TransferState state, TransferOutcome outcome) {
    m_stop.Raise();
    std::unique_lock lock(m_mutex);
    m_isStopping = true;
    // The last first: those that wait, so that none starts in the place of one that is cancelled.
    while (!m_running.empty()) {
        const auto [file, running] = *std::prev(m_running.end());
        lock.unlock();
        running.transfer->Cancel();
        lock.lock();
        TakeOver(file);
    }
    lock.unlock();
    End(state, std::move(outcome));
}

void FolderTransfer::End(TransferState state, TransferOutcome outcome) {
    {
        const std::scoped_lock lock(m_mutex);
        if (IsFinal(m_state)) {
            return;
        }
        if (m_isStopping) {
            m_tally.CancelRest();
        }
        outcome.localPath = std::move(m_outcome.localPath);
        outcome.itemId = std::move(m_outcome.itemId);
        m_outcome = std::move(outcome);
        m_state = state;
        m_changed.notify_all();
    }
    Tell();
    const std::scoped_lock lock(m_mutex);
    m_isSettled = true;
    m_changed.notify_all();
}

void FolderTransfer::Tell() {
    m_gate.Call(GetProgress());
}

FolderProgress FolderTransfer::GetProgress() const {
    const std::scoped_lock lock(m_mutex);
    FolderProgress progress = m_tally.Progress();
    progress.state = m_state;
    return progress;
}

bool FolderTransfer::Wait(std::chrono::milliseconds time) const {
    std::unique_lock lock(m_mutex);
    return m_changed.wait_for(
        lock, time, [this] { return m_isSettled || m_state == TransferState::NeedsSignIn; });
}

const TransferOutcome* FolderTransfer::GetOutcome() const {
    const std::scoped_lock lock(m_mutex);
    return IsFinal(m_state) ? &m_outcome : nullptr;
}

FolderEntryProgress FolderTransfer::EntryProgress(std::size_t number) const {
    const std::scoped_lock lock(m_mutex);
    return m_tally.ProgressOf(number + 1);
}

std::string FolderTransfer::EntryPath(std::size_t number) const {
    const std::scoped_lock lock(m_mutex);
    return m_tally.Tree().PathOf(number + 1);
}

std::optional<TransferOutcome> FolderTransfer::EntryOutcome(std::size_t number) const {
    const std::scoped_lock lock(m_mutex);
    return m_tally.OutcomeOf(number + 1);
}

} // namespace transfers
