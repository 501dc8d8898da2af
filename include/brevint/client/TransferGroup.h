#pragma once

#include "brevint/client/Transfer.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <stdexcept>
#include <string>

namespace brevint {

/// What is done with a file that is at the destination already.
enum class Existing : std::int32_t {
    Refuse = BREVINT_EXISTING_REFUSE,   ///< It stays, and the entry fails with Failure::Exists.
    Replace = BREVINT_EXISTING_REPLACE, ///< It is replaced.
    Update = BREVINT_EXISTING_UPDATE ///< It is replaced if its size differs, if it is older, or if
                                     ///< nobody can tell.
};

/// What becomes of an entry.
enum class EntryAction : std::int32_t {
    Transfer = BREVINT_ACTION_TRANSFER,
    MakeFolder = BREVINT_ACTION_MAKE_FOLDER,
    Skip = BREVINT_ACTION_SKIP,    ///< It is there already and needs no update.
    Refuse = BREVINT_ACTION_REFUSE ///< It cannot be moved; its outcome says why. What a refused
                                   ///< folder holds is not looked at.
};

/// A snapshot of a group.
struct GroupProgress {
    TransferState state = TransferState::Waiting;
    std::size_t entryCount = 0;       ///< Folders and files known so far.
    std::size_t filesTotal = 0;       ///< Files to be moved, without those refused or skipped.
    std::size_t filesDone = 0;        ///< Of them, those that have arrived.
    std::size_t filesFailed = 0;      ///< Files and folders, refused ones included.
    std::uint64_t bytesDone = 0;      ///< Never goes back.
    std::uint64_t bytesTotal = 0;     ///< Of the files to be moved whose sizes are known.
    std::uint64_t bytesPerSecond = 0; ///< Lately.
    std::optional<std::chrono::seconds> timeLeft;
};

/// One folder or file of a group.
struct GroupEntry {
    std::string path; ///< Below the folder, with "/" between names.
    EntryAction action = EntryAction::Transfer;
    TransferState state = TransferState::Waiting;
    std::uint64_t bytesDone = 0;
    std::optional<std::uint64_t> bytesTotal;
};

/// How a folder is moved.
struct FolderOptions {
    /// See BasicTransfer; may be empty. It is also told of every entry that has ended.
    std::function<void(const GroupProgress&)> onChange = {};
    Existing existing = Existing::Refuse;
    bool planOnly = false;  ///< Nothing is moved or made; the entries tell what would be, and stay
                            ///< in the state Waiting.
    bool keepTimes = false; ///< Downloaded files get the times of their items.
    bool durable = false;   ///< As in DownloadOptions.
    bool keepsPart = false; ///< As in DownloadOptions.
};

namespace detail {

/// What BasicTransfer needs to know of a group.
struct WholeFolder {
    using Handle = brevint_group;
    using Raw = brevint_group_progress;
    using Progress = GroupProgress;

    static Progress ToProgress(const Raw& raw) {
        return {.state = static_cast<TransferState>(raw.state),
                .entryCount = raw.entry_count,
                .filesTotal = raw.files_total,
                .filesDone = raw.files_done,
                .filesFailed = raw.files_failed,
                .bytesDone = raw.bytes_done,
                .bytesTotal = raw.bytes_total,
                .bytesPerSecond = raw.bytes_per_second,
                .timeLeft = Duration(raw.seconds_left)};
    }
    static Progress GetProgress(const Handle* handle) {
        Raw raw = Initial(brevint_group_progress_init);
        brevint_group_progress_get(handle, &raw);
        return ToProgress(raw);
    }
    static bool GetOutcome(const Handle* handle, brevint_outcome* outcome) {
        return brevint_group_outcome(handle, outcome) != 0;
    }
    static void Cancel(Handle* handle) { brevint_group_cancel(handle); }
    static void Free(Handle* handle) noexcept { brevint_group_free(handle); }
};

} // namespace detail

/// A folder with all that it holds, on its way. It has finished if every entry has, or has been
/// skipped. If some have failed, the text of its outcome counts them.
///
///     brevint::TransferGroup group =
///         client.DownloadFolder({brevint::kProjects, "2026"}, "2026",
///                               {.existing = brevint::Existing::Update});
///     group.Wait();
///     for (std::size_t index = 0; index < group.GetProgress().entryCount; ++index) {
///         if (const brevint::Outcome outcome = group.GetEntryOutcome(index); outcome.error) {
///             std::cerr << group.GetEntry(index).path << ": " << outcome.error.text << '\n';
///         }
///     }
class TransferGroup : public BasicTransfer<detail::WholeFolder> {
public:
    TransferGroup() = default;

    /// One of the entries that the progress counts; throws std::out_of_range for another.
    [[nodiscard]] GroupEntry GetEntry(std::size_t index) const {
        brevint_group_entry entry = detail::Initial(brevint_group_entry_init);
        if (brevint_group_entry_get(Handle(), index, &entry) == 0) {
            throw std::out_of_range("brevint: there is no such entry");
        }
        return {.path = detail::Text(entry.path),
                .action = static_cast<EntryAction>(entry.action),
                .state = static_cast<TransferState>(entry.state),
                .bytesDone = entry.bytes_done,
                .bytesTotal = detail::Size(entry.bytes_total)};
    }

    /// What came of an entry. Before its end only the state.
    [[nodiscard]] Outcome GetEntryOutcome(std::size_t index) const {
        brevint_outcome outcome = detail::Initial(brevint_outcome_init);
        return brevint_group_entry_outcome(Handle(), index, &outcome) != 0
                   ? detail::ToOutcome(outcome)
                   : Outcome{.state = GetEntry(index).state};
    }

private:
    friend class Client;
    using BasicTransfer::BasicTransfer;
};

} // namespace brevint
