#pragma once

#include "brevint/client.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace brevint::explorer {

enum class TransferKind { Download, Upload, Replace, DownloadFolder, UploadFolder };

/// What is to be moved where.
struct TransferOrder {
    TransferKind kind = TransferKind::Download;
    std::string name;            ///< Of the file or folder, for people.
    std::string remoteId;        ///< Of the item, or for an upload of the folder that it goes into.
    std::filesystem::path local; ///< Of the file or folder here.
    std::optional<std::uint64_t> listedSize = {};
};

/// A file of a folder that could not be moved.
struct FileFailure {
    std::string path; ///< Below the folder.
    Error error;
};

/// From then on the user is told that nothing moves.
inline constexpr std::chrono::seconds kLongSilence{5};

/// Transfers, those under way and those that have ended. All of it on the thread that the client's
/// executor calls.
class TransfersModel {
public:
    /// Called with the place of what has changed; nothing: there are more or fewer than before.
    using Changed = std::function<void(std::optional<std::size_t>)>;
    using Ended = std::function<void(const Outcome&)>;

    /// How one transfer stands.
    struct Row {
        TransferOrder order;
        Progress progress = {};
        std::chrono::seconds silence{};         ///< While it runs: since when nothing has moved.
        Outcome outcome = {};                   ///< Once the state is final.
        std::size_t filesTotal = 0;             ///< Of a folder.
        std::size_t filesDone = 0;              ///< Of a folder.
        std::vector<FileFailure> failures = {}; ///< Of a folder, once the state is final.
        bool isLeft = false;                    ///< Another user, or service, has followed.
    };

    TransfersModel() = default;
    TransfersModel(const TransfersModel&) = delete;
    TransfersModel& operator=(const TransfersModel&) = delete;

    void SetChanged(Changed changed) { m_changed = std::move(changed); }

    /// `ended` is called at the end of the transfer, and again whenever one that tries it again
    /// ends. Without a client nothing begins.
    void Begin(const std::shared_ptr<Client>& client, TransferOrder order, Ended ended = {});
    void Cancel(std::size_t index);
    /// Begins one anew that was cancelled or has failed, in the session that there is now.
    void Retry(std::size_t index, const std::shared_ptr<Client>& client);
    /// Forgets what has ended.
    void ClearEnded();
    void CancelAll();
    /// Another user, or service, follows, who has nothing to do with what was begun before.
    void Leave();
    /// Looks at those that run, since one that stands still tells of nothing.
    void Look();

    std::size_t Count() const { return m_entries.size(); }
    const Row& At(std::size_t index) const { return m_entries[index]->row; }
    std::size_t ActiveCount() const;
    bool NeedsSignIn() const;
    static bool CanCancel(const Row& row) { return !IsFinal(row.progress.state); }
    static bool CanRetry(const Row& row) {
        return !row.isLeft && (row.progress.state == TransferState::Failed ||
                               row.progress.state == TransferState::Cancelled);
    }

private:
    using Clock = std::chrono::steady_clock;

    struct Entry {
        Row row;
        Clock::time_point lastMove;
        Ended ended;
        std::shared_ptr<Client> client;
        Transfer transfer;
        TransferGroup group;
    };

    void Start(Entry& entry);
    static void NoteBytes(Entry& entry, std::uint64_t bytesDone);
    static void NoteFiles(Entry& entry, std::size_t filesDone);
    void OnProgress(Entry& entry, const Progress& posted);
    void OnProgress(Entry& entry, const GroupProgress& posted);
    void Tell(const Entry& entry);

    std::vector<std::unique_ptr<Entry>> m_entries;
    Changed m_changed;
};

/// How it stands, in words.
std::wstring StateText(const TransfersModel::Row& row);
/// What else is known of a failure.
std::wstring FailureDetails(const TransfersModel::Row& row);
/// From 0 to 100; nothing where the size is not known.
std::optional<unsigned> Percentage(const Progress& progress);

} // namespace brevint::explorer
