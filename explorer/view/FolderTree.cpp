#include "explorer/view/FolderTree.h"

#include "explorer/resources/Resource.h"
#include "explorer/system/Text.h"
#include "explorer/view/Controls.h"
#include "explorer/view/Icons.h"

#include <algorithm>
#include <set>
#include <utility>

namespace brevint::explorer {

FolderTree::FolderTree(HWND parent, Listener listener)
    : m_listener(std::move(listener)),
      m_handle(CreateControl(
          parent, {.className = WC_TREEVIEWW,
                   .id = IDC_TREE,
                   .style = WS_TABSTOP | TVS_HASBUTTONS | TVS_LINESATROOT | TVS_SHOWSELALWAYS,
                   .exStyle = WS_EX_CLIENTEDGE,
                   .name = Text(IDS_FOLDERS)})) {
    TreeView_SetExtendedStyle(m_handle, TVS_EX_DOUBLEBUFFER, TVS_EX_DOUBLEBUFFER);
}

LRESULT FolderTree::OnNotify(const NMHDR& header) {
    const auto& change = reinterpret_cast<const NMTREEVIEWW&>(header);
    if (header.code == TVN_SELCHANGEDW && !m_isQuiet && change.itemNew.hItem) {
        m_listener.onChosen(LocationOf(change.itemNew.hItem));
    } else if (header.code == TVN_ITEMEXPANDINGW && change.action == TVE_EXPAND &&
               !TreeView_GetChild(m_handle, change.itemNew.hItem)) {
        m_opening = change.itemNew.hItem;
        m_listener.onOpened(LocationOf(m_opening));
        return TRUE; // not yet
    }
    return 0;
}

void FolderTree::ShowRoots() {
    Clear();
    for (const Step& root : Roots()) {
        Insert(TVI_ROOT, TVI_LAST, root);
    }
}

void FolderTree::Clear() {
    m_isQuiet = true;
    m_opening = nullptr;
    TreeView_SetImageList(m_handle, SmallIcons(m_handle), TVSIL_NORMAL);
    TreeView_DeleteAllItems(m_handle);
    m_steps.clear();
    m_isQuiet = false;
}

void FolderTree::SetFolders(const Location& location, const std::vector<Step>& folders) {
    const HTREEITEM parent = Find(location);
    if (!parent) {
        return;
    }
    std::set<std::string> wanted;
    for (const Step& folder : folders) {
        wanted.insert(folder.id);
    }
    m_isQuiet = true;
    std::map<std::string, HTREEITEM> known;
    for (HTREEITEM child = TreeView_GetChild(m_handle, parent); child;) {
        const HTREEITEM next = TreeView_GetNextSibling(m_handle, child);
        if (wanted.contains(m_steps[child].id)) {
            known[m_steps[child].id] = child;
        } else {
            Remove(child);
        }
        child = next;
    }
    HTREEITEM last = TVI_FIRST;
    for (const Step& folder : folders) {
        const auto there = known.find(folder.id);
        last = there == known.end() ? Insert(parent, last, folder) : there->second;
    }
    TVITEMW item = {};
    item.mask = TVIF_CHILDREN;
    item.hItem = parent;
    item.cChildren = folders.empty() ? 0 : 1;
    TreeView_SetItem(m_handle, &item);
    if (std::exchange(m_opening, m_opening == parent ? nullptr : m_opening) == parent) {
        TreeView_Expand(m_handle, parent, TVE_EXPAND);
    }
    m_isQuiet = false;
}

void FolderTree::Select(const Location& location) {
    m_isQuiet = true;
    HTREEITEM item = TVI_ROOT;
    for (const Step& step : location) {
        const HTREEITEM child = Child(item, step.id);
        item = child ? child : Insert(item, TVI_LAST, step);
    }
    if (item != TVI_ROOT) {
        TreeView_SelectItem(m_handle, item);
    }
    m_isQuiet = false;
}

HTREEITEM FolderTree::Child(HTREEITEM parent, const std::string& id) const {
    HTREEITEM child =
        parent == TVI_ROOT ? TreeView_GetRoot(m_handle) : TreeView_GetChild(m_handle, parent);
    while (child && m_steps.at(child).id != id) {
        child = TreeView_GetNextSibling(m_handle, child);
    }
    return child;
}

HTREEITEM FolderTree::Insert(HTREEITEM parent, HTREEITEM after, const Step& step) {
    std::wstring name = DisplayText(Wide(step.name));
    TVINSERTSTRUCTW insertion = {};
    insertion.hParent = parent;
    insertion.hInsertAfter = after;
    insertion.item.mask = TVIF_TEXT | TVIF_CHILDREN | TVIF_IMAGE | TVIF_SELECTEDIMAGE;
    insertion.item.pszText = name.data();
    insertion.item.cChildren = 1;
    insertion.item.iImage = insertion.item.iSelectedImage = FolderIcon();
    const HTREEITEM item = TreeView_InsertItem(m_handle, &insertion);
    m_steps[item] = step;
    return item;
}

void FolderTree::Remove(HTREEITEM item) {
    while (const HTREEITEM child = TreeView_GetChild(m_handle, item)) {
        Remove(child);
    }
    if (m_opening == item) {
        m_opening = nullptr;
    }
    m_steps.erase(item);
    TreeView_DeleteItem(m_handle, item);
}

HTREEITEM FolderTree::Find(const Location& location) const {
    HTREEITEM item = TVI_ROOT;
    for (const Step& step : location) {
        item = item ? Child(item, step.id) : nullptr;
    }
    return item == TVI_ROOT ? nullptr : item;
}

Location FolderTree::LocationOf(HTREEITEM item) const {
    Location location;
    for (; item; item = TreeView_GetParent(m_handle, item)) {
        location.insert(location.begin(), m_steps.at(item));
    }
    return location;
}

} // namespace brevint::explorer
