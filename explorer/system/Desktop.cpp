#include "explorer/system/Desktop.h"

#include "explorer/system/Handles.h"

#include <cstring>
#include <system_error>

#include <shellapi.h>
#include <shobjidl.h>

namespace brevint::explorer {

namespace {

std::filesystem::path PathOf(IShellItem* item) {
    wchar_t* found = nullptr;
    if (FAILED(item->GetDisplayName(SIGDN_FILESYSPATH, &found))) {
        return {};
    }
    const TaskMemoryPtr<wchar_t> path(found);
    return found;
}

/// A dialog of Windows for files, not shown yet.
template <class Dialog>
ComPtr<Dialog> NewDialog(const CLSID& type, FILEOPENDIALOGOPTIONS more) {
    void* made = nullptr;
    if (FAILED(CoCreateInstance(type, nullptr, CLSCTX_INPROC_SERVER, __uuidof(Dialog), &made))) {
        return nullptr;
    }
    ComPtr<Dialog> dialog(static_cast<Dialog*>(made));
    FILEOPENDIALOGOPTIONS options = 0;
    dialog->GetOptions(&options);
    dialog->SetOptions(options | FOS_FORCEFILESYSTEM | more);
    return dialog;
}

/// What the user has chosen in a dialog for one path.
std::filesystem::path Show(IFileDialog* dialog, HWND owner) {
    IShellItem* found = nullptr;
    if (!dialog || FAILED(dialog->Show(owner)) || FAILED(dialog->GetResult(&found))) {
        return {};
    }
    const ComPtr<IShellItem> item(found);
    return PathOf(found);
}

struct Clipboard {
    explicit Clipboard(HWND owner) : isOpen(OpenClipboard(owner) != FALSE) {}
    Clipboard(const Clipboard&) = delete;
    Clipboard& operator=(const Clipboard&) = delete;
    ~Clipboard() {
        if (isOpen) {
            CloseClipboard();
        }
    }
    const bool isOpen;
};

} // namespace

std::vector<std::filesystem::path> SystemDesktop::ChooseFiles(HWND owner) {
    const auto dialog =
        NewDialog<IFileOpenDialog>(CLSID_FileOpenDialog, FOS_ALLOWMULTISELECT | FOS_FILEMUSTEXIST);
    IShellItemArray* found = nullptr;
    if (!dialog || FAILED(dialog->Show(owner)) || FAILED(dialog->GetResults(&found))) {
        return {};
    }
    const ComPtr<IShellItemArray> items(found);
    DWORD count = 0;
    items->GetCount(&count);
    std::vector<std::filesystem::path> paths;
    for (DWORD i = 0; i < count; ++i) {
        IShellItem* item = nullptr;
        if (SUCCEEDED(items->GetItemAt(i, &item))) {
            const ComPtr<IShellItem> owned(item);
            paths.push_back(PathOf(item));
        }
    }
    std::erase(paths, std::filesystem::path());
    return paths;
}

std::filesystem::path SystemDesktop::ChooseFolder(HWND owner) {
    return Show(NewDialog<IFileOpenDialog>(CLSID_FileOpenDialog, FOS_PICKFOLDERS).get(), owner);
}

std::filesystem::path SystemDesktop::ChooseDestination(HWND owner, const std::wstring& name) {
    const auto dialog = NewDialog<IFileSaveDialog>(CLSID_FileSaveDialog, FOS_OVERWRITEPROMPT);
    if (dialog) {
        dialog->SetFileName(name.c_str());
    }
    return Show(dialog.get(), owner);
}

std::wstring SystemDesktop::Open(HWND owner, const std::filesystem::path& file) {
    SHELLEXECUTEINFOW how = {};
    how.cbSize = sizeof how;
    how.fMask = SEE_MASK_FLAG_NO_UI;
    how.hwnd = owner;
    how.lpFile = file.c_str();
    how.nShow = SW_SHOWNORMAL;
    if (ShellExecuteExW(&how)) {
        return {};
    }
    const DWORD error = GetLastError();
    wchar_t text[512] = L"";
    FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, error, 0,
                   text, static_cast<DWORD>(std::size(text)), nullptr);
    return *text ? text : std::to_wstring(error);
}

bool SystemDesktop::Copy(HWND owner, const std::wstring& text) {
    const Clipboard clipboard(owner);
    const std::size_t size = (text.size() + 1) * sizeof(wchar_t);
    Owner<HGLOBAL, GlobalFree> memory(GlobalAlloc(GMEM_MOVEABLE, size));
    void* const target = memory ? GlobalLock(memory.get()) : nullptr;
    if (!clipboard.isOpen || !target) {
        return false;
    }
    std::memcpy(target, text.c_str(), size);
    GlobalUnlock(memory.get());
    EmptyClipboard();
    if (!SetClipboardData(CF_UNICODETEXT, memory.get())) {
        return false;
    }
    static_cast<void>(memory.release()); // it is the clipboard's now
    return true;
}

} // namespace brevint::explorer
