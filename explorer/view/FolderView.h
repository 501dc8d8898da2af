#pragma once

#include "explorer/background/Session.h"
#include "explorer/model/Location.h"
#include "explorer/view/FolderList.h"
#include "explorer/view/FolderTree.h"
#include "explorer/view/Notice.h"

#include <functional>
#include <optional>
#include <string>

namespace brevint::explorer {

/// The folder that is shown: its place in the tree, what it holds, or why that cannot be shown.
class FolderView {
public:
    struct Listener {
        std::function<void()> onLocation;  ///< Another folder than before.
        std::function<void()> onSelection; ///< Or other items than before.
        std::function<void()> onOpen;      ///< What is selected.
    };

    FolderView(HWND parent, Session& session, Listener listener);
    FolderView(const FolderView&) = delete;
    FolderView& operator=(const FolderView&) = delete;

    const Location& Current() const { return m_location; }
    /// Whether what is shown is what the folder holds.
    bool IsListed() const { return m_isListed; }

    FolderList& List() { return m_list; }
    const FolderList& List() const { return m_list; }
    FolderTree& Tree() { return m_tree; }
    Notice& Message() { return m_notice; }

    /// Lists a folder. In the end the item of that identifier is selected, if there is one.
    void GoTo(Location location, const std::string& selectedId = {});
    void GoToPath(const std::string& path);
    void GoUp();
    /// Lists the folder anew, and keeps what is selected.
    void Refresh(const std::string& selectedId = {});
    /// Refreshes if that is the folder that is shown.
    void RefreshIf(const std::string& folderId, const std::string& selectedId = {});
    void Filter(const std::wstring& text);

    /// Begins with the roots, after a sign-in, or goes on with the folder that was shown.
    void Start();
    /// Shows no folder but a notice.
    void Clear(Notice::Content why);

    /// Where list and notice stand.
    void MoveList(const RECT& place);
    void FocusList();

private:
    void Fetch(const std::string& selectedId, bool keepsSelection);
    void DropListing();
    void ShowFailure(const Error& error, std::function<void()> again);
    void ShowWhatIsThere();
    void ShowNotice(Notice::Content content);
    void OpenInTree(const Location& location);

    Session& m_session;
    const Listener m_listener;
    FolderTree m_tree;
    FolderList m_list;
    Notice m_notice;
    Location m_location;
    std::wstring m_filter;
    std::optional<Session::CallId> m_listing;
    bool m_isListed = false;
    bool m_followsPath = false; ///< To wherever it leads, or it has led nowhere.
};

} // namespace brevint::explorer
