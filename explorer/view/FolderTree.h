#pragma once

#include "explorer/model/Location.h"
#include "explorer/system/Handles.h"

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace brevint::explorer {

/// The tree of the folders, as far as it has been listed.
class FolderTree {
public:
    struct Listener {
        std::function<void(const Location&)> onChosen;
        /// A folder is opened whose folders are not known; see SetFolders.
        std::function<void(const Location&)> onOpened;
    };

    FolderTree(HWND parent, Listener listener);
    FolderTree(const FolderTree&) = delete;
    FolderTree& operator=(const FolderTree&) = delete;

    HWND Handle() const { return m_handle; }
    LRESULT OnNotify(const NMHDR& header);

    void ShowRoots();
    void Clear();
    /// The folders in a folder, in their order. Those that are there already stay as they are.
    void SetFolders(const Location& location, const std::vector<Step>& folders);
    void Select(const Location& location);

private:
    HTREEITEM Child(HTREEITEM parent, const std::string& id) const;
    HTREEITEM Insert(HTREEITEM parent, HTREEITEM after, const Step& step);
    void Remove(HTREEITEM item);
    HTREEITEM Find(const Location& location) const;
    Location LocationOf(HTREEITEM item) const;

    const Listener m_listener;
    HWND m_handle;
    std::map<HTREEITEM, Step> m_steps;
    HTREEITEM m_opening = nullptr; ///< Opened once its folders are known.
    bool m_isQuiet = false;        ///< The selection is not the user's.
};

} // namespace brevint::explorer
