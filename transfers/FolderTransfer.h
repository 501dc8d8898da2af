#pragma once

#include "calls/StopSignal.h"
#include "transfers/FolderPlan.h"
#include "transfers/FolderTally.h"
#include "transfers/ListenerGate.h"
#include "transfers/TransferQueue.h"

#include <chrono>
#include <condition_variable>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace transfers {

using FolderListener = ListenerGate<FolderProgress>::Listener;

/// A folder with all that it holds, on its way. Planned first: nothing moves before each folder and
/// file is known. Then folders are made, and files are handed to the queue, of which it has a
/// limited number at a time. It has a thread while it plans and makes folders, and none while it
/// waits for transfers or a sign-in. Any thread.
class FolderTransfer final : public QueueMember,
                             public std::enable_shared_from_this<FolderTransfer> {
public:
    FolderTransfer(std::shared_ptr<const Service> service, std::shared_ptr<TransferQueue> queue,
                   std::unique_ptr<const FolderPlan> plan, FolderListener listener);

    void Begin();

    FolderProgress GetProgress() const;
    /// As Transfer::Wait.
    bool Wait(std::chrono::milliseconds time) const;
    /// Null until the state is final. Does not change any more then.
    const TransferOutcome* GetOutcome() const;

    /// Entries are numbered from 0 to FolderProgress::entries.
    FolderEntryProgress EntryProgress(std::size_t number) const;
    std::string EntryPath(std::size_t number) const;
    /// Nothing until the entry's state is final.
    std::optional<TransferOutcome> EntryOutcome(std::size_t number) const;

    /// As Transfer::Cancel, with all transfers of the group.
    void Cancel() override;
    /// Cancels, and has the listener called no more.
    void LetGo();
    void OnSignedIn() override;

private:
    using Call = std::function<calls::Failure(const calls::CallContext&)>;

    /// A file that the queue has.
    struct Running {
        std::shared_ptr<Transfer> transfer;
        bool needsSignIn = false;
    };

    // On the group's thread.
    void StartThread();
    void Work();
    /// Goes on to where the queue does the rest. A failure ends the group, or waits for a sign-in.
    calls::Failure Advance();
    calls::Failure Plan();
    calls::Failure MakeFolders();
    calls::Failure MakeFolder(std::size_t folder);
    /// Attempts a call until it succeeds or there is no point in another attempt.
    calls::Failure Attempt(const Call& call);

    /// Hands files to the queue as long as there is room, and ends the group after the last one.
    void Feed();
    /// The next file that can be moved; null if there is none now.
    std::shared_ptr<Transfer> NextTransfer();
    /// A transfer tells how it stands.
    void OnTransfer(std::size_t file, TransferState state);
    void FailForMemory();

    // Called while the mutex is held.
    /// Takes over how a transfer stands. True if it has ended.
    bool TakeOver(std::size_t file);
    void UpdateState();

    /// False if there has been a sign-in since a call was refused for want of one.
    bool NeedsSignIn();

    /// Ends the group, and before that all that has not ended.
    void Stop(TransferState state, TransferOutcome outcome);
    void End(TransferState state, TransferOutcome outcome);
    void Tell();

    const std::shared_ptr<const Service> m_service;
    const std::shared_ptr<TransferQueue> m_queue;
    const std::unique_ptr<const FolderPlan> m_plan;
    ListenerGate<FolderProgress> m_gate;
    calls::StopSignal m_stop;

    // Of the group's thread.
    std::size_t m_explored = 0; ///< Entries before it have been looked into.
    std::size_t m_made = 0;     ///< Folders before it have been made.

    mutable std::mutex m_mutex; ///< For what follows.
    mutable std::condition_variable m_changed;
    /// Entries are added on the group's thread only, and what says what is moved where does not
    /// change after that: reading this takes no lock there, nor once all is planned.
    FolderTally m_tally;
    TransferState m_state = TransferState::Waiting;
    TransferOutcome m_outcome;
    std::size_t m_next = 0; ///< Files before it have been handed to the queue.
    std::map<std::size_t, Running> m_running;
    bool m_isPlanned = false;
    bool m_needsSignIn = false; ///< For planning or making folders.
    bool m_hasSignedIn = false; ///< Somebody has, since a call began that may have been refused.
    bool m_isFeeding = false;
    bool m_hasRoom = false; ///< For the one who feeds: look again.
    bool m_isStopping = false;
    bool m_isSettled = false; ///< The listener has been told of the final state.
};

} // namespace transfers
