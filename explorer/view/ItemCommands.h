#pragma once

#include "explorer/background/Session.h"
#include "explorer/model/TransfersModel.h"
#include "explorer/system/Desktop.h"
#include "explorer/system/OpenedFiles.h"
#include "explorer/view/DialogStack.h"
#include "explorer/view/FolderView.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

namespace brevint::explorer {

/// What the user can do with the folder that is shown and with the items that are selected in it.
class ItemCommands {
public:
    ItemCommands(Session& session, FolderView& view, DialogStack& dialogs,
                 TransfersModel& transfers, Desktop& desktop);
    ItemCommands(const ItemCommands&) = delete;
    ItemCommands& operator=(const ItemCommands&) = delete;

    /// The window that dialogs of Windows belong to.
    void SetOwner(HWND owner) { m_owner = owner; }

    /// Goes into a folder; fetches a file and hands it to the program that is meant for it.
    void Open();
    void Download();
    void Replace();
    void CheckOut();
    void CheckIn();
    void Delete();
    void CopyPaths();
    void ShowProperties();
    void CreateFolder();
    void ChooseUpload();
    void ChooseFolderUpload();
    /// Files and folders, into the folder that is shown.
    void Upload(const std::vector<std::filesystem::path>& paths);

private:
    struct Batch;
    struct UploadedFile;
    using Work = std::function<bool(Client&, const Item&, const CallOptions&)>;

    /// Makes a call for each item, one after the other, and refreshes the folder.
    void ForEach(std::vector<Item> items, Work work);
    void GoOn(const std::shared_ptr<Batch>& batch);
    void Conclude(const Batch& batch);

    /// Has the user choose in a dialog of Windows. Meanwhile a session may end, and another folder
    /// be shown: then what was chosen is not used, and the user is told why.
    template <class Choose>
    std::invoke_result_t<Choose> Chosen(Choose choose);

    void OpenFile(const Item& item);
    void Launch(const std::filesystem::path& file);
    void HandOver(const std::filesystem::path& file);
    void DownloadInto(const std::filesystem::path& folder, const std::vector<Item>& items);
    void UploadFolder(const std::filesystem::path& source);
    void BeginUploads(const std::string& folderId, const std::vector<UploadedFile>& files);

    /// `yes` is called if the user agrees.
    void Ask(PCWSTR icon, std::wstring question, UINT yesLabel, std::function<void()> yes);
    /// Asks what is to be done with what is there already.
    void AskToReplace(const std::vector<std::wstring>& names, std::function<void()> replace,
                      std::function<void()> skip);
    void Tell(std::wstring text);

    Session& m_session;
    FolderView& m_view;
    DialogStack& m_dialogs;
    TransfersModel& m_transfers;
    Desktop& m_desktop;
    OpenedFiles m_opened;
    HWND m_owner = nullptr;
};

} // namespace brevint::explorer
