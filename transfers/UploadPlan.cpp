#include "calls/Calls.h"
#include "calls/FailureText.h"
#include "calls/Items.h"
#include "responses/FolderListing.h"
#include "support/Files.h"
#include "support/IsoTime.h"
#include "support/ItemName.h"
#include "support/Limits.h"
#include "support/LocalItem.h"
#include "support/LocalName.h"
#include "support/PartFileRules.h"
#include "support/Utf8.h"
#include "transfers/FolderPlan.h"
#include "transfers/Upload.h"
#include "transfers/WidePath.h"

#include <algorithm>
#include <optional>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace transfers {

namespace fs = std::filesystem;

using calls::CallContext;
using calls::Failure;
using calls::FailureKind;
using calls::ItemKind;

namespace {

/// What a folder of the service holds, by name.
class ItemsThere {
public:
    explicit ItemsThere(const FolderListing& listing) : m_listing(listing) {
        for (std::size_t i = 0; i < listing.Count(); ++i) {
            m_items.emplace(NameKey(listing.At(i).name), i);
        }
    }

    /// Items that the service may take for one of that name, the one with the very name first.
    std::optional<FolderItemView> Find(const std::string& name, const std::string& key) const {
        std::optional<FolderItemView> found;
        const auto [begin, end] = m_items.equal_range(key);
        for (auto next = begin; next != end && (!found || found->name != name); ++next) {
            found = m_listing.At(next->second);
        }
        return found;
    }

private:
    const FolderListing& m_listing;
    std::unordered_multimap<std::string, std::size_t> m_items;
};

/// The names in a local folder, in order.
std::vector<fs::path> NamesIn(const fs::path& folder, std::error_code& reason) {
    std::vector<fs::path> names;
    fs::directory_iterator next(folder, reason);
    while (!reason && next != fs::directory_iterator()) {
        names.push_back(next->path().filename());
        next.increment(reason);
    }
    std::ranges::sort(names);
    return names;
}

/// Whether what stands at a local path can be sent at all.
void JudgeLocal(FolderEntry& entry, const LocalItem& local, const fs::path& path) {
    using Kind = LocalItem::Kind;
    const std::wstring name = Utf8::ToWide(entry.name);
    std::uint64_t bytes = 0;
    if (local.kind != Kind::Folder && local.kind != Kind::File) {
        entry.Refuse(FailureKind::LocalFile, L"It is a link, or neither a file nor a folder.");
    } else if (ToPath(entry.name) != path.filename() || !IsFormName(name)) {
        entry.Refuse(FailureKind::LocalFile, L"Its name cannot be sent.");
    } else if (PartFileRules::IsPartName(entry.name)) {
        entry.Refuse(FailureKind::LocalFile, L"It belongs to a download that has not ended.");
    } else if (entry.depth > Limits::kDeepestFolder) {
        entry.Refuse(FailureKind::Refused, L"It lies in too many folders.");
    } else if (!entry.isFolder && local.bytes == 0) {
        entry.Refuse(FailureKind::LocalFile, L"The service takes no empty files.");
    } else if (!entry.isFolder && IsProgramName(name)) {
        entry.Refuse(FailureKind::Refused, L"The service takes no programs.");
    } else if (!entry.isFolder && !BaseHlpr::OpenRegularFile(WidePath(path), bytes)) {
        entry.Refuse(FailureKind::LocalFile, L"The local file cannot be read.");
    }
}

} // namespace

FolderEntry UploadPlan::Root() const {
    FolderEntry root;
    root.itemId = Utf8::ToNarrow(Request().folderId);
    root.isFolder = true;
    if (Request().planOnly && root.itemId.empty()) {
        root.action = FolderAction::MakeFolder;
    } else {
        root.Skip();
    }
    return root;
}

Failure UploadPlan::Explore(const CallContext& at, const FolderTree& tree, std::size_t folder,
                            std::vector<FolderEntry>& content) const {
    FolderListing listing;
    if (tree[folder].action == FolderAction::Skip) {
        const std::wstring id = Utf8::ToWide(tree[folder].itemId);
        if (Failure failure = calls::ListFolder(at, id, listing)) {
            return failure;
        }
    }
    const ItemsThere there(listing);
    const fs::path place = tree.LocalPathOf(folder);
    std::error_code reason;
    const std::vector<fs::path> names = NamesIn(place, reason);
    if (reason) {
        Failure failure;
        failure.kind = FailureKind::LocalFile;
        failure.text = calls::FileFailureText(L"The local folder cannot be read", reason);
        return failure;
    }
    if (!tree.HasRoomFor(names.size())) {
        return TooManyEntries();
    }
    std::unordered_set<std::string> keys;
    for (const fs::path& name : names) {
        if (at.stop.IsRaised()) {
            break;
        }
        const LocalItem local = LookAtLocalItem(place / name);
        FolderEntry entry;
        entry.name = NarrowPath(name);
        entry.parent = static_cast<std::uint32_t>(folder);
        entry.depth = static_cast<std::uint16_t>(tree[folder].depth + 1);
        entry.isFolder = local.kind == LocalItem::Kind::Folder;
        if (local.kind == LocalItem::Kind::File) {
            entry.bytes = local.bytes;
            entry.modified = local.modified;
        }
        JudgeLocal(entry, local, place / name);
        const std::string key = NameKey(entry.name);
        if (entry.action != FolderAction::Refuse && !keys.insert(key).second) {
            entry.Refuse(FailureKind::LocalFile,
                         L"The service may not tell its name from another one in its folder.");
        }
        if (entry.action != FolderAction::Refuse) {
            JudgePlace(entry, there.Find(entry.name, key));
        }
        content.push_back(std::move(entry));
    }
    return {};
}

void UploadPlan::JudgePlace(FolderEntry& entry, const std::optional<FolderItemView>& there) const {
    if (entry.isFolder) {
        entry.action = FolderAction::MakeFolder;
    }
    if (!there) {
        return;
    }
    const ItemKind wanted = entry.isFolder ? ItemKind::Folder : ItemKind::File;
    if (there->name != entry.name || calls::KindOf(*there) != wanted) {
        entry.Refuse(FailureKind::Exists,
                     L"There is \"" + Utf8::ToWide(there->name) + L"\", which is something else.");
        return;
    }
    entry.itemId = there->id;
    if (entry.isFolder) {
        entry.Skip();
    } else {
        JudgeExisting(entry, calls::BytesOf(*there).value_or(kUnknownSize),
                      ParseIsoTime(there->modified));
    }
}

Failure UploadPlan::MakeFolder(const CallContext& at, const FolderTree& tree, std::size_t folder,
                               std::string& itemId) const {
    const std::wstring parent = Utf8::ToWide(tree.ParentOf(folder).itemId);
    std::wstring made;
    Failure failure = calls::CreateFolder(at, parent, Utf8::ToWide(tree[folder].name), made);
    itemId = Utf8::ToNarrow(made);
    if (failure.kind != FailureKind::Exists) {
        return failure;
    }
    // An earlier attempt may have made it, whose reply was lost.
    FolderListing listing;
    if (Failure unlisted = calls::ListFolder(at, parent, listing)) {
        return unlisted;
    }
    const auto found = ItemsThere(listing).Find(tree[folder].name, NameKey(tree[folder].name));
    if (!found || found->name != tree[folder].name || calls::KindOf(*found) != ItemKind::Folder) {
        return failure;
    }
    itemId = found->id;
    return {};
}

std::shared_ptr<Transfer> UploadPlan::MakeTransfer(const std::shared_ptr<const Service>& service,
                                                   const FolderTree& tree, std::size_t file,
                                                   TransferListener listener) const {
    using Kind = UploadRequest::Kind;
    const bool isNew = tree[file].itemId.empty();
    return std::make_shared<Upload>(
        service,
        UploadRequest{.kind = isNew ? Kind::NewFile : Kind::Content,
                      .target =
                          Utf8::ToWide(isNew ? tree.ParentOf(file).itemId : tree[file].itemId),
                      .path = tree.LocalPathOf(file)},
        std::move(listener));
}

} // namespace transfers
