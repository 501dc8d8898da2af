#include "explorer/view/Icons.h"

#include "explorer/view/Controls.h"

#include <commoncontrols.h>
#include <shellapi.h>

namespace brevint::explorer {

namespace {

int Icon(const wchar_t* name, DWORD attributes) {
    SHFILEINFOW info = {};
    SHGetFileInfoW(name, attributes, &info, sizeof info,
                   SHGFI_SYSICONINDEX | SHGFI_SMALLICON | SHGFI_USEFILEATTRIBUTES);
    return info.iIcon;
}

} // namespace

HIMAGELIST SmallIcons(HWND window) {
    // The small ones are as large as the main screen wants them; this one may be much finer.
    const int wanted = Scaled(window, 16);
    const int size = 3 * wanted > 4 * GetSystemMetrics(SM_CXSMICON) ? SHIL_LARGE : SHIL_SMALL;
    void* list = nullptr;
    SHGetImageList(size, __uuidof(IImageList), &list);
    return static_cast<HIMAGELIST>(list);
}

int FolderIcon() {
    return Icon(L"folder", FILE_ATTRIBUTE_DIRECTORY);
}

int FileIcon(const std::wstring& name) {
    const std::size_t dot = name.rfind(L'.');
    return Icon(dot == std::wstring::npos ? L"file" : name.c_str() + dot, FILE_ATTRIBUTE_NORMAL);
}

} // namespace brevint::explorer
