#include "transfers/FolderTree.h"

#include "support/Limits.h"
#include "transfers/WidePath.h"

#include <algorithm>
#include <utility>

namespace transfers {

TransferOutcome OutcomeOf(const calls::Failure& failure) {
    TransferOutcome outcome;
    outcome.kind = failure.kind;
    outcome.code = failure.code;
    outcome.status = failure.status;
    outcome.failure = failure.connection;
    outcome.text = failure.text;
    outcome.serverMessage = failure.serverMessage;
    return outcome;
}

calls::Failure TooManyEntries() {
    return calls::Invalid(L"The folder holds too much to be moved as a whole.");
}

void FolderEntry::Refuse(const calls::Failure& failure) {
    action = FolderAction::Refuse;
    state = TransferState::Failed;
    outcome = std::make_unique<TransferOutcome>(OutcomeOf(failure));
}

void FolderEntry::Refuse(calls::FailureKind kind, std::wstring text) {
    calls::Failure failure;
    failure.kind = kind;
    failure.text = std::move(text);
    Refuse(failure);
}

void FolderEntry::Skip() {
    action = FolderAction::Skip;
    state = TransferState::Finished;
}

FolderTree::FolderTree(std::filesystem::path localRoot, FolderEntry root)
    : m_localRoot(std::move(localRoot)) {
    m_entries.push_back(std::move(root));
}

bool FolderTree::HasRoomFor(std::size_t count) const {
    return count <= Limits::kMostEntries - std::min(Limits::kMostEntries, m_entries.size());
}

std::string FolderTree::PathOf(std::size_t index) const {
    std::string path;
    for (; index != kRoot; index = m_entries[index].parent) {
        path.insert(0, path.empty() ? m_entries[index].name : m_entries[index].name + '/');
    }
    return path;
}

std::filesystem::path FolderTree::LocalPathOf(std::size_t index) const {
    return index == kRoot ? m_localRoot : m_localRoot / ToPath(PathOf(index));
}

bool FolderTree::LeadsThrough(std::size_t folder, std::string_view itemId) const {
    for (;; folder = m_entries[folder].parent) {
        if (m_entries[folder].itemId == itemId) {
            return true;
        }
        if (folder == kRoot) {
            return false;
        }
    }
}

} // namespace transfers
