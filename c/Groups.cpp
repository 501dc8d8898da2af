#include "c/Queue.h"
#include "transfers/FolderTransfer.h"

#include <exception>
#include <map>
#include <mutex>
#include <optional>

using namespace c;
using transfers::FolderTransfer;

struct brevint_group {
    std::shared_ptr<FolderTransfer> group;

    // The texts of entries and outcomes, made when somebody asks.
    mutable std::mutex mutex;
    mutable std::map<std::size_t, std::string> paths;
    mutable std::map<std::size_t, OutcomeTexts> entryTexts;
    mutable std::optional<OutcomeTexts> texts;
};

namespace {

brevint_group_progress ToC(const transfers::FolderProgress& progress) {
    brevint_group_progress result = Blank<brevint_group_progress>();
    result.state = static_cast<std::int32_t>(progress.state);
    result.entry_count = progress.entries;
    result.files_total = progress.filesTotal;
    result.files_done = progress.filesDone;
    result.files_failed = progress.failed;
    result.bytes_done = progress.done;
    result.bytes_total = progress.total;
    result.bytes_per_second = progress.bytesPerSecond;
    result.seconds_left = progress.secondsLeft;
    return result;
}

/// A value that nobody knows replaces nothing.
transfers::Existing ToExisting(std::int32_t existing) {
    const bool isKnown =
        existing == BREVINT_EXISTING_REPLACE || existing == BREVINT_EXISTING_UPDATE;
    return isKnown ? static_cast<transfers::Existing>(existing) : transfers::Existing::Refuse;
}

/// Makes a group and its handle, which the listener is told, and begins it.
template <class Plan>
brevint_group* Begin(brevint_queue* queue, const brevint_folder_transfer* transfer) noexcept {
    const brevint_folder_transfer given = Complete(transfer, brevint_folder_transfer_init);
    try {
        auto handle = std::make_unique<brevint_group>();
        transfers::FolderListener call;
        if (given.listener) {
            call = [listener = given.listener, user = given.user,
                    raw = handle.get()](const auto& progress) {
                const brevint_group_progress told = ToC(progress);
                listener(user, raw, &told);
            };
        }
        handle->group = std::make_shared<FolderTransfer>(
            queue->service, queue->queue,
            std::make_unique<Plan>(transfers::FolderRequest{.folderId = Wide(given.folder_id),
                                                            .localPath = Path(given.local_path),
                                                            .existing = ToExisting(given.existing),
                                                            .planOnly = given.plan_only != 0,
                                                            .keepsTimes = given.keep_times != 0,
                                                            .durable = given.durable != 0,
                                                            .keepsPart = given.keeps_part != 0}),
            std::move(call));
        // The listener may free the handle before this returns.
        const std::shared_ptr<FolderTransfer> group = handle->group;
        group->Begin();
        return handle.release();
    } catch (const std::exception&) {
        return nullptr;
    }
}

} // namespace

void brevint_folder_transfer_init(brevint_folder_transfer* transfer, size_t size) {
    Initialise<brevint_folder_transfer>({}, transfer, size);
}

void brevint_group_progress_init(brevint_group_progress* progress, size_t size) {
    Initialise<brevint_group_progress>({}, progress, size);
}

void brevint_group_entry_init(brevint_group_entry* entry, size_t size) {
    Initialise<brevint_group_entry>({}, entry, size);
}

brevint_group* brevint_queue_download_folder(brevint_queue* queue,
                                             const brevint_folder_transfer* transfer) {
    return Begin<transfers::DownloadPlan>(queue, transfer);
}

brevint_group* brevint_queue_upload_folder(brevint_queue* queue,
                                           const brevint_folder_transfer* transfer) {
    return Begin<transfers::UploadPlan>(queue, transfer);
}

void brevint_group_progress_get(const brevint_group* group, brevint_group_progress* progress) {
    Store(ToC(group->group->GetProgress()), progress);
}

int32_t brevint_group_wait(const brevint_group* group, uint32_t milliseconds) {
    return group->group->Wait(std::chrono::milliseconds(milliseconds)) ? 1 : 0;
}

int32_t brevint_group_outcome(const brevint_group* group, brevint_outcome* outcome) {
    const transfers::TransferOutcome* const known = group->group->GetOutcome();
    if (!known) {
        return 0;
    }
    try {
        const std::scoped_lock lock(group->mutex);
        if (!group->texts) {
            group->texts.emplace(*known);
        }
        Store(ToC(*known, group->group->GetProgress().state, *group->texts), outcome);
        return 1;
    } catch (const std::exception&) {
        return 0;
    }
}

int32_t brevint_group_entry_get(const brevint_group* group, size_t index,
                                brevint_group_entry* entry) {
    if (index >= group->group->GetProgress().entries) {
        return 0;
    }
    try {
        const std::scoped_lock lock(group->mutex);
        std::string& path = group->paths[index];
        if (path.empty()) {
            path = group->group->EntryPath(index);
        }
        const transfers::FolderEntryProgress progress = group->group->EntryProgress(index);
        brevint_group_entry result = Blank<brevint_group_entry>();
        result.path = path.c_str();
        result.action = static_cast<std::int32_t>(progress.action);
        result.state = static_cast<std::int32_t>(progress.state);
        result.bytes_done = progress.done;
        result.bytes_total = progress.total;
        Store(result, entry);
        return 1;
    } catch (const std::exception&) {
        return 0;
    }
}

int32_t brevint_group_entry_outcome(const brevint_group* group, size_t index,
                                    brevint_outcome* outcome) {
    if (index >= group->group->GetProgress().entries) {
        return 0;
    }
    try {
        const auto known = group->group->EntryOutcome(index);
        if (!known) {
            return 0;
        }
        const std::scoped_lock lock(group->mutex);
        const OutcomeTexts& texts = group->entryTexts.try_emplace(index, *known).first->second;
        Store(ToC(*known, group->group->EntryProgress(index).state, texts), outcome);
        return 1;
    } catch (const std::exception&) {
        return 0;
    }
}

void brevint_group_cancel(brevint_group* group) {
    group->group->Cancel();
}

void brevint_group_free(brevint_group* group) {
    const std::unique_ptr<brevint_group> owned(group);
    if (group) {
        group->group->LetGo();
    }
}
