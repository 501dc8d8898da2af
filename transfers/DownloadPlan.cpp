#include "calls/Calls.h"
#include "calls/FailureText.h"
#include "calls/Items.h"
#include "calls/Names.h"
#include "responses/FolderListing.h"
#include "support/IsoTime.h"
#include "support/Limits.h"
#include "support/LocalItem.h"
#include "support/LocalName.h"
#include "support/Utf8.h"
#include "transfers/Download.h"
#include "transfers/FolderPlan.h"
#include "transfers/WidePath.h"

#include <unordered_set>
#include <utility>

namespace transfers {

namespace fs = std::filesystem;

using calls::CallContext;
using calls::Failure;
using calls::FailureKind;
using calls::ItemKind;

namespace {

FolderEntry Describe(const FolderItemView& item) {
    FolderEntry entry;
    entry.name = item.name;
    entry.itemId = item.id;
    entry.bytes = calls::BytesOf(item).value_or(kUnknownSize);
    entry.modified = ParseIsoTime(item.modified);
    entry.isFolder = calls::KindOf(item) == ItemKind::Folder;
    return entry;
}

/// Whether what the service tells of an item is of use.
void JudgeItem(FolderEntry& entry, ItemKind kind, const FolderTree& tree) {
    if (!calls::IsIdentifier(Utf8::ToWide(entry.itemId))) {
        entry.Refuse(FailureKind::NotTheService, L"The service names no identifier of it.");
    } else if (kind == ItemKind::Other) {
        entry.Refuse(FailureKind::Refused, L"It is neither a file nor a folder.");
    } else if (!IsLocalName(entry.name)) {
        entry.Refuse(FailureKind::LocalFile, L"No local file may have that name.");
    } else if (entry.depth > Limits::kDeepestFolder) {
        entry.Refuse(FailureKind::Refused, L"It lies in too many folders.");
    } else if (entry.isFolder && tree.LeadsThrough(entry.parent, entry.itemId)) {
        entry.Refuse(FailureKind::NotTheService, L"The folder is said to hold itself.");
    }
}

} // namespace

FolderEntry DownloadPlan::Root() const {
    FolderEntry root;
    root.itemId = Utf8::ToNarrow(Request().folderId);
    root.isFolder = true;
    // The user has named it, and may mean what a link leads to.
    std::error_code unknown;
    root.action = FolderAction::MakeFolder;
    if (fs::is_directory(Request().localPath, unknown)) {
        root.Skip();
    }
    return root;
}

Failure DownloadPlan::Explore(const CallContext& at, const FolderTree& tree, std::size_t folder,
                              std::vector<FolderEntry>& content) const {
    FolderListing listing;
    if (Failure failure = calls::ListFolder(at, Utf8::ToWide(tree[folder].itemId), listing)) {
        return failure;
    }
    if (!tree.HasRoomFor(listing.Count())) {
        return TooManyEntries();
    }
    const fs::path place = tree.LocalPathOf(folder);
    const bool isThere = tree[folder].action == FolderAction::Skip;
    std::unordered_set<std::string> keys;
    for (std::size_t i = 0; i < listing.Count(); ++i) {
        const FolderItemView item = listing.At(i);
        FolderEntry entry = Describe(item);
        entry.parent = static_cast<std::uint32_t>(folder);
        entry.depth = static_cast<std::uint16_t>(tree[folder].depth + 1);
        JudgeItem(entry, calls::KindOf(item), tree);
        if (entry.action != FolderAction::Refuse && !keys.insert(NameKey(entry.name)).second) {
            entry.Refuse(FailureKind::LocalFile,
                         L"A disk may not tell its name from another one in its folder.");
        }
        if (entry.action != FolderAction::Refuse) {
            JudgePlace(entry, isThere ? LookAtLocalItem(place / ToPath(entry.name)) : LocalItem());
        }
        content.push_back(std::move(entry));
    }
    return {};
}

void DownloadPlan::JudgePlace(FolderEntry& entry, const LocalItem& there) const {
    using Kind = LocalItem::Kind;
    if (entry.isFolder) {
        entry.action = FolderAction::MakeFolder;
    }
    if (there.kind == Kind::Missing) {
        return;
    }
    if (there.kind != (entry.isFolder ? Kind::Folder : Kind::File)) {
        entry.Refuse(FailureKind::Exists, L"A link or something else of that name stands there.");
    } else if (entry.isFolder) {
        entry.Skip();
    } else {
        JudgeExisting(entry, there.bytes, there.modified);
    }
}

Failure DownloadPlan::MakeFolder(const CallContext&, const FolderTree& tree, std::size_t folder,
                                 std::string&) const {
    const fs::path place = tree.LocalPathOf(folder);
    std::error_code reason;
    if (folder == FolderTree::kRoot) {
        fs::create_directories(place, reason);
    } else if (!fs::create_directory(place, reason) && !reason &&
               LookAtLocalItem(place).kind != LocalItem::Kind::Folder) {
        reason = std::make_error_code(std::errc::not_a_directory);
    }
    Failure failure;
    if (reason) {
        failure.kind = FailureKind::LocalFile;
        failure.text = calls::FileFailureText(L"The folder cannot be made", reason);
    }
    return failure;
}

std::shared_ptr<Transfer> DownloadPlan::MakeTransfer(const std::shared_ptr<const Service>& service,
                                                     const FolderTree& tree, std::size_t file,
                                                     TransferListener listener) const {
    return std::make_shared<Download>(service,
                                      DownloadRequest{.itemId = Utf8::ToWide(tree[file].itemId),
                                                      .destination = tree.LocalPathOf(file),
                                                      .listedSize = tree[file].bytes,
                                                      .durable = Request().durable,
                                                      .keepsPart = Request().keepsPart},
                                      std::move(listener));
}

void DownloadPlan::OnArrived(const FolderTree& tree, std::size_t file) const {
    const std::optional<std::int64_t> modified = tree[file].modified;
    if (Request().keepsTimes && modified) {
        // If that fails the file counts as written now, and so as new enough.
        static_cast<void>(SetLocalFileTime(tree.LocalPathOf(file), *modified));
    }
}

} // namespace transfers
