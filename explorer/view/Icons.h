#pragma once

#include "explorer/system/Handles.h"

#include <string>

namespace brevint::explorer {

// The icons by which Windows shows files. They are places in lists of icons that Windows owns.

/// The list of small icons, as large as the window's screen wants them.
HIMAGELIST SmallIcons(HWND window);
int FolderIcon();
/// By the name's ending alone: nothing is looked for on a disk.
int FileIcon(const std::wstring& name);

} // namespace brevint::explorer
