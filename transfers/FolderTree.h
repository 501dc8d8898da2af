#pragma once

#include "calls/Failure.h"
#include "transfers/TransferState.h"

#include <cstdint>
#include <deque>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace transfers {

/// What is done with a file that is at the destination already. The numbers are those of
/// brevint_existing.
enum class Existing { Refuse, Replace, Update };

/// What becomes of a folder or file. The numbers are those of brevint_action.
enum class FolderAction { Transfer, MakeFolder, Skip, Refuse };

/// One folder or file of a group.
struct FolderEntry {
    std::string name;   ///< UTF-8.
    std::string itemId; ///< At the service; empty as long as there is none.
    std::uint64_t bytes = kUnknownSize;
    std::uint64_t done = 0;                   ///< Bytes.
    std::optional<std::int64_t> modified;     ///< Of what is moved: seconds since 1970, UTC.
    std::unique_ptr<TransferOutcome> outcome; ///< Where the state does not tell everything.
    std::uint32_t parent = 0;                 ///< The index of its folder.
    std::uint16_t depth = 0;                  ///< Of folders around it.
    std::uint16_t status = 0; ///< HTTP status of the last reply, once it has been moved.
    bool isVerified = false;  ///< As in TransferOutcome.
    bool isFolder = false;
    FolderAction action = FolderAction::Transfer;
    TransferState state = TransferState::Waiting;

    /// It cannot be moved.
    void Refuse(calls::FailureKind kind, std::wstring text);
    void Refuse(const calls::Failure& failure);
    /// It is there already.
    void Skip();
};

/// The folders and files of a group. Each stands after its folder; the first is the folder whose
/// content is moved.
class FolderTree {
public:
    static constexpr std::size_t kRoot = 0;

    /// `localRoot` is the local one of the two folders that `root` stands for.
    FolderTree(std::filesystem::path localRoot, FolderEntry root);

    std::size_t Size() const { return m_entries.size(); }
    FolderEntry& operator[](std::size_t index) { return m_entries[index]; }
    const FolderEntry& operator[](std::size_t index) const { return m_entries[index]; }
    const FolderEntry& ParentOf(std::size_t index) const {
        return m_entries[m_entries[index].parent];
    }
    /// Whether so many entries more are within the limit.
    bool HasRoomFor(std::size_t count) const;
    void Add(FolderEntry entry) { m_entries.push_back(std::move(entry)); }

    /// Below the root, with "/" between names, UTF-8.
    std::string PathOf(std::size_t index) const;
    std::filesystem::path LocalPathOf(std::size_t index) const;
    /// Whether an item is the folder itself or one around it.
    bool LeadsThrough(std::size_t folder, std::string_view itemId) const;

private:
    const std::filesystem::path m_localRoot;
    std::deque<FolderEntry> m_entries;
};

/// The failure of a tree that goes beyond the limit.
calls::Failure TooManyEntries();

/// A failure as the outcome of what failed.
TransferOutcome OutcomeOf(const calls::Failure& failure);

} // namespace transfers
