#pragma once

#include "transfers/FolderTree.h"
#include "transfers/Speed.h"
#include "transfers/Transfer.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace transfers {

/// A snapshot of a group.
struct FolderProgress {
    TransferState state = TransferState::Waiting; ///< Waiting: it is being planned.
    std::size_t entries = 0;                      ///< Folders and files known so far.
    std::size_t filesTotal = 0;                   ///< To be moved.
    std::size_t filesDone = 0;
    std::size_t failed = 0;  ///< Folders and files, refused ones included.
    std::uint64_t done = 0;  ///< Bytes. Never goes back.
    std::uint64_t total = 0; ///< Bytes of the files to be moved whose sizes are known.
    std::uint64_t bytesPerSecond = 0;
    std::uint64_t secondsLeft = kUnknownSize;
};

/// A snapshot of a folder or file of a group.
struct FolderEntryProgress {
    FolderAction action = FolderAction::Transfer;
    TransferState state = TransferState::Waiting;
    std::uint64_t done = 0;
    std::uint64_t total = kUnknownSize;
};

/// The entries of a group, and what has come of them so far. Entries are numbered as in the tree.
class FolderTally {
public:
    FolderTally(std::filesystem::path localRoot, FolderEntry root)
        : m_tree(std::move(localRoot), std::move(root)) {}

    const FolderTree& Tree() const { return m_tree; }

    /// Adds what a folder holds.
    void Adopt(std::vector<FolderEntry> content);
    /// A folder turns out to be one that cannot be moved.
    void Refuse(std::size_t folder, const calls::Failure& failure);
    void FinishFolder(std::size_t folder, std::string itemId);
    void Fail(std::size_t index, TransferOutcome outcome);
    /// Takes over how the transfer of a file stands.
    void TakeOver(std::size_t file, const Transfer& transfer);
    /// What has not ended has been cancelled.
    void CancelRest();
    /// True when the interval since the last report is over.
    bool IsReportDue(std::chrono::milliseconds interval);

    /// Of all entries together, but for the state.
    FolderProgress Progress() const;
    /// What has come of all entries once they have ended.
    TransferOutcome Outcome() const;
    FolderEntryProgress ProgressOf(std::size_t index) const;
    /// Nothing until the entry's state is final.
    std::optional<TransferOutcome> OutcomeOf(std::size_t index) const;

private:
    void CountFailed(std::size_t index);

    FolderTree m_tree;
    FolderProgress m_progress;
    Speed m_speed;
    std::size_t m_firstFailed = 0;
};

/// The outcomes of what needs no further word.
TransferOutcome FinishedOutcome();
TransferOutcome CancelledOutcome();

} // namespace transfers
