#include "explorer/view/ItemCommands.h"

#include "explorer/model/ErrorText.h"
#include "explorer/resources/Resource.h"
#include "explorer/system/Formats.h"
#include "explorer/system/Text.h"
#include "explorer/view/NameDialog.h"
#include "explorer/view/PropertiesDialog.h"
#include "support/LocalName.h"

#include <algorithm>
#include <optional>
#include <set>
#include <system_error>
#include <utility>

namespace brevint::explorer {

namespace {

namespace fs = std::filesystem;

/// Files that come from the service are handled with the care that the internet deserves.
void MarkIfFinished(const Outcome& outcome) {
    if (outcome) {
        MarkAsDownloaded(outcome.localPath);
    }
}

} // namespace

/// Items that are worked on one after the other.
struct ItemCommands::Batch {
    std::vector<Item> items;
    Work work;
    std::string folderId;
    std::size_t next = 0;
    std::vector<std::pair<std::string, Error>> failures; ///< By name.
};

/// A file that is to be uploaded.
struct ItemCommands::UploadedFile {
    fs::path path;
    std::optional<Item> existing; ///< What it replaces.
};

ItemCommands::ItemCommands(Session& session, FolderView& view, DialogStack& dialogs,
                           TransfersModel& transfers, Desktop& desktop)
    : m_session(session), m_view(view), m_dialogs(dialogs), m_transfers(transfers),
      m_desktop(desktop) {}

void ItemCommands::Ask(PCWSTR icon, std::wstring question, UINT yesLabel,
                       std::function<void()> yes) {
    m_dialogs.ShowMessage({.icon = icon,
                           .title = Text(IDS_TITLE),
                           .text = std::move(question),
                           .choices = {{Text(yesLabel), std::move(yes)}, {Text(IDS_CANCEL)}},
                           .defaultChoice = 1});
}

void ItemCommands::AskToReplace(const std::vector<std::wstring>& names,
                                std::function<void()> replace, std::function<void()> skip) {
    const bool isOne = names.size() == 1;
    m_dialogs.ShowMessage({.icon = IDI_QUESTION,
                           .title = Text(IDS_TITLE),
                           .text = isOne ? Text(IDS_ASK_REPLACE_ONE, {DisplayText(names.front())})
                                         : Text(IDS_ASK_REPLACE_MANY, {NumberText(names.size())}),
                           .choices = {{Text(IDS_DO_REPLACE), std::move(replace)},
                                       {Text(IDS_DO_SKIP), std::move(skip)},
                                       {Text(IDS_CANCEL)}},
                           .defaultChoice = 1});
}

void ItemCommands::Tell(std::wstring text) {
    m_dialogs.ShowMessage({.icon = IDI_WARNING,
                           .title = Text(IDS_TITLE),
                           .text = std::move(text),
                           .choices = {{Text(IDS_OK)}}});
}

void ItemCommands::ForEach(std::vector<Item> items, Work work) {
    if (m_view.Current().empty()) {
        return;
    }
    const auto batch = std::make_shared<Batch>();
    batch->items = std::move(items);
    batch->work = std::move(work);
    batch->folderId = m_view.Current().back().id;
    GoOn(batch);
}

void ItemCommands::GoOn(const std::shared_ptr<Batch>& batch) {
    if (batch->next == batch->items.size()) {
        Conclude(*batch);
        return;
    }
    const Item& item = batch->items[batch->next++];
    m_session.Call(
        [work = batch->work, item](Client& client, const CallOptions& options) {
            return work(client, item, options);
        },
        [this, batch, name = item.name](const Reply<bool>& reply) {
            if (reply.error) {
                batch->failures.emplace_back(name, reply.error);
            }
            // Whoever stops one of many means all of them.
            const Failure failure = reply.error.failure;
            if (failure == Failure::Cancelled || failure == Failure::NotSignedIn) {
                batch->next = batch->items.size();
            }
            GoOn(batch);
        });
}

void ItemCommands::Conclude(const Batch& batch) {
    m_view.RefreshIf(batch.folderId);
    if (batch.failures.empty()) {
        return;
    }
    std::wstring details;
    for (const auto& [name, error] : batch.failures) {
        details += Text(IDS_FAILED_ITEM, {DisplayText(Wide(name)), ErrorText(error)}) + L"\r\n" +
                   ErrorDetails(error) + L"\r\n";
    }
    const auto& [name, error] = batch.failures.front();
    m_dialogs.ShowMessage(
        {.icon = IDI_WARNING,
         .title = Text(IDS_TITLE),
         .text = Text(IDS_FAILED_ITEM, {DisplayText(Wide(name)), ErrorText(error)}),
         .details = details,
         .choices = {{Text(IDS_OK)}}});
}

void ItemCommands::CheckOut() {
    ForEach(m_view.List().SelectedItems(),
            [](Client& client, const Item& item, const CallOptions& options) {
                return client.CheckOut(item, options);
            });
}

void ItemCommands::CheckIn() {
    ForEach(m_view.List().SelectedItems(),
            [](Client& client, const Item& item, const CallOptions& options) {
                return client.CheckIn(item, options);
            });
}

void ItemCommands::Delete() {
    const std::vector<Item> items = m_view.List().SelectedItems();
    if (items.empty()) {
        return;
    }
    const UINT askForOne =
        items.front().kind == ItemKind::Folder ? IDS_ASK_DELETE_FOLDER : IDS_ASK_DELETE_ONE;
    const std::wstring question = items.size() == 1
                                      ? Text(askForOne, {DisplayText(Wide(items.front().name))})
                                      : Text(IDS_ASK_DELETE_MANY, {NumberText(items.size())});
    Ask(IDI_WARNING, question, IDS_DO_DELETE, [this, items] {
        ForEach(items, [](Client& client, const Item& item, const CallOptions& options) {
            return client.Delete(item, options);
        });
    });
}

void ItemCommands::CopyPaths() {
    std::wstring paths;
    for (const Item& item : m_view.List().SelectedItems()) {
        paths += (paths.empty() ? L"" : L"\r\n") + Wide(PathOf(m_view.Current(), item.name));
    }
    if (!m_desktop.Copy(m_owner, paths)) {
        Tell(Text(IDS_CANNOT_COPY));
    }
}

void ItemCommands::ShowProperties() {
    for (const Item& item : m_view.List().SelectedItems()) {
        m_dialogs.Show(
            std::make_unique<PropertiesDialog>(item, PathOf(m_view.Current(), item.name)));
        return;
    }
}

void ItemCommands::CreateFolder() {
    const std::string parentId = m_view.Current().back().id;
    const std::wstring where = DisplayText(Wide(m_view.Current().back().name));
    const auto create = [this, parentId](const std::wstring& name) {
        m_session.Call(
            [parentId, name = Utf8(name)](Client& client, const CallOptions& options) {
                return client.CreateFolder(parentId, name, options);
            },
            [this, parentId](const Reply<std::string>& reply) {
                if (reply.error) {
                    m_dialogs.ShowError(reply.error);
                } else {
                    m_view.RefreshIf(parentId, reply.value);
                }
            });
    };
    m_dialogs.Show(std::make_unique<NameDialog>(Text(IDS_NEW_FOLDER_TITLE),
                                                Text(IDS_NEW_FOLDER_PROMPT, {where}), create));
}

void ItemCommands::Open() {
    const std::vector<Item> items = m_view.List().SelectedItems();
    if (items.size() == 1 && items.front().kind == ItemKind::Folder) {
        Location location = m_view.Current();
        location.push_back({items.front().id, items.front().name});
        m_view.GoTo(std::move(location));
    } else if (items.size() == 1) {
        if (IsProgram(LocalName(items.front().name))) {
            Ask(IDI_WARNING, Text(IDS_ASK_PROGRAM, {DisplayText(LocalName(items.front().name))}),
                IDS_DO_OPEN, [this, item = items.front()] { OpenFile(item); });
        } else {
            OpenFile(items.front());
        }
    }
}

void ItemCommands::OpenFile(const Item& item) {
    const fs::path path = m_opened.NewPath(LocalName(item.name));
    if (path.empty()) {
        Tell(Text(IDS_CANNOT_MAKE_FILE));
        return;
    }
    m_transfers.Begin(m_session.GetClient(),
                      {.kind = TransferKind::Download,
                       .name = item.name,
                       .remoteId = item.id,
                       .local = path,
                       .listedSize = item.size},
                      [this](const Outcome& outcome) {
                          if (outcome) {
                              Launch(outcome.localPath);
                          }
                      });
}

void ItemCommands::Launch(const fs::path& file) {
    if (MarkAsDownloaded(file)) {
        HandOver(file);
    } else {
        Ask(IDI_WARNING, Text(IDS_NOT_MARKED, {DisplayText(file.filename().wstring())}),
            IDS_DO_OPEN, [this, file] { HandOver(file); });
    }
}

void ItemCommands::HandOver(const fs::path& file) {
    if (const std::wstring reason = m_desktop.Open(m_owner, file); !reason.empty()) {
        Tell(Text(IDS_CANNOT_OPEN, {DisplayText(file.filename().wstring()), reason}));
    }
}

template <class Choose>
std::invoke_result_t<Choose> ItemCommands::Chosen(Choose choose) {
    const auto target = [this] {
        return std::pair(m_session.Tenure(), PathOf(m_view.Current()));
    };
    const auto before = target();
    auto chosen = choose();
    if (!chosen.empty() && target() != before) {
        Tell(Text(IDS_FOLDER_LEFT));
        return {};
    }
    return chosen;
}

void ItemCommands::Download() {
    const std::vector<Item> items = m_view.List().SelectedItems();
    if (items.size() == 1 && items.front().kind == ItemKind::File) {
        const Item& item = items.front();
        const fs::path path =
            Chosen([&] { return m_desktop.ChooseDestination(m_owner, LocalName(item.name)); });
        if (!path.empty()) {
            m_transfers.Begin(m_session.GetClient(),
                              {.kind = TransferKind::Download,
                               .name = item.name,
                               .remoteId = item.id,
                               .local = path,
                               .listedSize = item.size},
                              MarkIfFinished);
        }
        return;
    }
    const fs::path folder =
        items.empty() ? fs::path() : Chosen([&] { return m_desktop.ChooseFolder(m_owner); });
    if (folder.empty()) {
        return;
    }
    std::vector<Item> fresh;
    std::vector<std::wstring> names;
    for (const Item& item : items) {
        std::error_code ignored;
        if (item.kind == ItemKind::File && fs::exists(folder / LocalName(item.name), ignored)) {
            names.push_back(Wide(item.name));
        } else {
            fresh.push_back(item);
        }
    }
    if (names.empty()) {
        DownloadInto(folder, items);
    } else {
        AskToReplace(
            names, [this, folder, items] { DownloadInto(folder, items); },
            [this, folder, fresh] { DownloadInto(folder, fresh); });
    }
}

void ItemCommands::DownloadInto(const fs::path& folder, const std::vector<Item>& items) {
    std::set<std::string> keys;
    for (const Item& item : items) {
        const std::wstring name = LocalName(item.name);
        if (!keys.insert(NameKey(Utf8(name))).second) {
            Tell(Text(IDS_SAME_NAME, {DisplayText(Wide(item.name))}));
            continue;
        }
        const bool isFolder = item.kind == ItemKind::Folder;
        TransferOrder order = {.kind =
                                   isFolder ? TransferKind::DownloadFolder : TransferKind::Download,
                               .name = item.name,
                               .remoteId = item.id,
                               .local = folder / name,
                               .listedSize = item.size};
        m_transfers.Begin(m_session.GetClient(), std::move(order),
                          isFolder ? TransfersModel::Ended() : MarkIfFinished);
    }
}

void ItemCommands::Replace() {
    const std::vector<Item> items = m_view.List().SelectedItems();
    const std::vector<fs::path> files = Chosen([&] { return m_desktop.ChooseFiles(m_owner); });
    if (items.size() != 1 || files.empty()) {
        return;
    }
    const Item& item = items.front();
    Ask(IDI_QUESTION,
        Text(IDS_ASK_REPLACE_CONTENT,
             {DisplayText(Wide(item.name)), DisplayText(files.front().filename().wstring())}),
        IDS_DO_REPLACE,
        [this, folderId = m_view.Current().back().id,
         replaced = UploadedFile{files.front(), item}] { BeginUploads(folderId, {replaced}); });
}

void ItemCommands::ChooseUpload() {
    Upload(Chosen([&] { return m_desktop.ChooseFiles(m_owner); }));
}

void ItemCommands::ChooseFolderUpload() {
    const fs::path folder = Chosen([&] { return m_desktop.ChooseFolder(m_owner); });
    if (!folder.empty()) {
        Upload({folder});
    }
}

void ItemCommands::Upload(const std::vector<fs::path>& paths) {
    if (m_view.Current().empty()) {
        return;
    }
    // Until the user has answered, another folder may be shown.
    const std::string folderId = m_view.Current().back().id;
    std::vector<UploadedFile> fresh;
    std::vector<UploadedFile> files;
    std::vector<std::wstring> existing;
    for (const fs::path& path : paths) {
        std::error_code ignored;
        if (fs::is_directory(path, ignored)) {
            UploadFolder(path);
            continue;
        }
        if (!fs::is_regular_file(path, ignored)) {
            Tell(Text(IDS_NOT_A_FILE, {DisplayText(path.wstring())}));
            continue;
        }
        const std::wstring name = path.filename().wstring();
        const std::optional<Item> there = m_view.List().Model().FindName(name);
        if (there && there->kind == ItemKind::File) {
            files.push_back({path, there});
            existing.push_back(name);
        } else {
            files.push_back({path, std::nullopt});
            fresh.push_back(files.back());
        }
    }
    if (existing.empty()) {
        BeginUploads(folderId, files);
    } else {
        AskToReplace(
            existing, [this, folderId, files] { BeginUploads(folderId, files); },
            [this, folderId, fresh] { BeginUploads(folderId, fresh); });
    }
}

void ItemCommands::BeginUploads(const std::string& folderId,
                                const std::vector<UploadedFile>& files) {
    for (const auto& [path, existing] : files) {
        m_transfers.Begin(m_session.GetClient(),
                          {.kind = existing ? TransferKind::Replace : TransferKind::Upload,
                           .name = existing ? existing->name : Utf8(path.filename().wstring()),
                           .remoteId = existing ? existing->id : folderId,
                           .local = path},
                          [this, folderId](const Outcome& outcome) {
                              if (outcome) {
                                  m_view.RefreshIf(folderId);
                              }
                          });
    }
}

void ItemCommands::UploadFolder(const fs::path& source) {
    const std::string parentId = m_view.Current().back().id;
    const std::string name = Utf8(source.filename().wstring());
    const auto begin = [this, source, parentId, name](const std::string& folderId) {
        m_transfers.Begin(m_session.GetClient(),
                          {.kind = TransferKind::UploadFolder,
                           .name = name,
                           .remoteId = folderId,
                           .local = source},
                          [this, folderId](const Outcome&) { m_view.RefreshIf(folderId); });
    };
    const std::optional<Item> existing =
        m_view.List().Model().FindName(source.filename().wstring());
    if (existing && existing->kind == ItemKind::Folder) {
        begin(existing->id);
        return;
    }
    m_session.Call(
        [parentId, name](Client& client, const CallOptions& options) {
            return client.CreateFolder(parentId, name, options);
        },
        [this, parentId, begin](const Reply<std::string>& reply) {
            if (reply.error) {
                m_dialogs.ShowError(reply.error);
                return;
            }
            m_view.RefreshIf(parentId);
            begin(reply.value);
        });
}

} // namespace brevint::explorer
