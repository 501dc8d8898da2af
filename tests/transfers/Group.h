#pragma once

#include "tests/transfers/Queue.h"

#include <map>
#include <string>

namespace brevint::test {

struct GroupFree {
    void operator()(brevint_group* group) const noexcept { brevint_group_free(group); }
};
using GroupPtr = std::unique_ptr<brevint_group, GroupFree>;
using GroupListener = std::function<void(brevint_group*, const brevint_group_progress&)>;

inline void CallGroupListener(void* user, brevint_group* group,
                              const brevint_group_progress* progress) {
    (*static_cast<GroupListener*>(user))(group, *progress);
}

inline brevint_folder_transfer Options(brevint_existing existing = BREVINT_EXISTING_REFUSE) {
    brevint_folder_transfer options;
    brevint_folder_transfer_init(&options, sizeof options);
    options.existing = existing;
    return options;
}

using FolderFunction = brevint_group* (*)(brevint_queue*, const brevint_folder_transfer*);

inline GroupPtr Start(FolderFunction begin, const Queue& queue, const std::string& folderId,
                      const std::filesystem::path& path,
                      brevint_folder_transfer options = Options(),
                      GroupListener* listener = nullptr) {
    const std::string local = Utf8(path);
    options.folder_id = folderId.c_str();
    options.local_path = local.c_str();
    options.listener = listener ? CallGroupListener : nullptr;
    options.user = listener;
    return GroupPtr(begin(queue.get(), &options));
}

inline brevint_group_progress Progress(const GroupPtr& group) {
    brevint_group_progress progress;
    brevint_group_progress_init(&progress, sizeof progress);
    brevint_group_progress_get(group.get(), &progress);
    return progress;
}

/// Waits for the end.
inline brevint_outcome Outcome(const GroupPtr& group) {
    brevint_outcome outcome;
    brevint_outcome_init(&outcome, sizeof outcome);
    if (brevint_group_wait(group.get(), kLongEnough) != 0) {
        brevint_group_outcome(group.get(), &outcome);
    }
    return outcome;
}

/// What a group tells of an entry.
struct Entry {
    int action = -1;
    int state = -1;
    int failure = -1; ///< -1: it has no outcome.
};

inline std::map<std::string, Entry> Entries(const GroupPtr& group) {
    std::map<std::string, Entry> entries;
    brevint_group_entry entry;
    brevint_group_entry_init(&entry, sizeof entry);
    for (std::size_t i = 0; brevint_group_entry_get(group.get(), i, &entry) != 0; ++i) {
        brevint_outcome outcome;
        brevint_outcome_init(&outcome, sizeof outcome);
        const bool hasEnded = brevint_group_entry_outcome(group.get(), i, &outcome) != 0;
        entries[entry.path] = {entry.action, entry.state, hasEnded ? outcome.failure : -1};
    }
    return entries;
}

} // namespace brevint::test
