#include "explorer/view/FolderView.h"

#include "explorer/model/ErrorText.h"
#include "explorer/resources/Resource.h"
#include "explorer/system/Text.h"
#include "explorer/view/Controls.h"

#include <utility>

namespace brevint::explorer {

namespace {

/// In the order of their names.
std::vector<Step> FoldersIn(FolderModel model) {
    model.Arrange(Column::Name, false, {});
    std::vector<Step> folders;
    for (std::size_t row = 0; row < model.RowCount() && model.IsFolder(row); ++row) {
        const Item item = model.ItemAt(row);
        folders.push_back({item.id, item.name});
    }
    return folders;
}

/// A listing as a list and a tree show it.
struct Contents {
    FolderModel model;
    std::vector<Step> folders;
};

Contents Fetched(const Client& client, const std::string& folderId, const CallOptions& options) {
    Contents contents{FolderModel(client.List(folderId, options)), {}};
    contents.folders = FoldersIn(contents.model);
    return contents;
}

} // namespace

FolderView::FolderView(HWND parent, Session& session, Listener listener)
    : m_session(session), m_listener(std::move(listener)),
      m_tree(parent, {.onChosen = [this](const Location& location) { GoTo(location); },
                      .onOpened =
                          [this](const Location& location) {
                              OpenInTree(location);
                          }}),
      m_list(parent, {.onSelection = [this] { m_listener.onSelection(); },
                      .onOpen =
                          [this] {
                              m_listener.onOpen();
                          }}),
      m_notice(parent) {}

void FolderView::GoTo(Location location, const std::string& selectedId) {
    if (location.empty()) {
        return;
    }
    m_location = std::move(location);
    m_isListed = false;
    m_filter.clear();
    m_list.Filter({});
    m_list.Show({}, false);
    m_tree.Select(m_location);
    m_listener.onLocation();
    ShowNotice({.text = Text(IDS_LOADING)});
    Fetch(selectedId, false);
}

void FolderView::GoToPath(const std::string& path) {
    if (!m_session.IsOpen()) {
        return;
    }
    m_isListed = false;
    m_followsPath = true;
    m_list.Show({}, false);
    ShowNotice({.text = Text(IDS_LOADING)});
    DropListing();
    m_listing =
        m_session.Call([path](const Client& client,
                              const CallOptions& options) { return Follow(client, path, options); },
                       [this, path](const Reply<Found>& reply) {
                           m_listing.reset();
                           if (reply.error) {
                               ShowFailure(reply.error, [this, path] { GoToPath(path); });
                           } else {
                               GoTo(reply.value.folder, reply.value.fileId);
                           }
                       });
}

void FolderView::GoUp() {
    if (m_location.size() > 1) {
        const std::string left = m_location.back().id;
        GoTo({m_location.begin(), m_location.end() - 1}, left);
    }
}

void FolderView::Refresh(const std::string& selectedId) {
    if (!m_location.empty()) {
        Fetch(selectedId, true);
    }
}

void FolderView::RefreshIf(const std::string& folderId, const std::string& selectedId) {
    if (!m_followsPath && !m_location.empty() && m_location.back().id == folderId) {
        Refresh(selectedId);
    }
}

void FolderView::Fetch(const std::string& selectedId, bool keepsSelection) {
    DropListing();
    m_followsPath = false;
    m_listing = m_session.Call(
        [id = m_location.back().id](const Client& client, const CallOptions& options) {
            return Fetched(client, id, options);
        },
        [this, selectedId, keepsSelection](Reply<Contents> reply) {
            m_listing.reset();
            if (reply.error) {
                ShowFailure(reply.error, [this] { GoTo(m_location); });
                return;
            }
            m_tree.SetFolders(m_location, reply.value.folders);
            m_isListed = true;
            m_list.Show(std::move(reply.value.model), keepsSelection);
            ShowWhatIsThere();
            m_list.Select(selectedId);
        });
}

void FolderView::DropListing() {
    if (const auto listing = std::exchange(m_listing, std::nullopt)) {
        m_session.Drop(*listing);
    }
}

void FolderView::OpenInTree(const Location& location) {
    m_session.Call(
        [id = location.back().id](const Client& client, const CallOptions& options) {
            return FoldersIn(FolderModel(client.List(id, options)));
        },
        [this, location](const Reply<std::vector<Step>>& reply) {
            const Failure failure = reply.error.failure;
            if (!reply.error) {
                m_tree.SetFolders(location, reply.value);
            } else if (failure != Failure::Cancelled && failure != Failure::NotSignedIn) {
                GoTo(location); // which tells what is wrong
            }
        });
}

void FolderView::Filter(const std::wstring& text) {
    if (text != m_filter) {
        m_filter = text;
        m_list.Filter(text);
        if (m_isListed) {
            ShowWhatIsThere();
        }
    }
}

void FolderView::ShowWhatIsThere() {
    const FolderModel& model = m_list.Model();
    if (model.ItemCount() == 0) {
        ShowNotice({.text = Text(IDS_EMPTY_FOLDER)});
    } else if (model.RowCount() == 0) {
        ShowNotice({.text = Text(IDS_NOTHING_FOUND, {m_filter})});
    } else {
        const bool hadFocus =
            IsChild(m_notice.Handle(), GetFocus()) || GetFocus() == m_notice.Handle();
        ShowWindow(m_list.Handle(), SW_SHOW);
        if (hadFocus) {
            SetFocus(m_list.Handle());
        }
        m_notice.Hide();
    }
}

void FolderView::ShowFailure(const Error& error, std::function<void()> again) {
    m_isListed = false;
    m_list.Show({}, false);
    const bool isStopped = error.failure == Failure::Cancelled;
    ShowNotice({.text = isStopped ? Text(IDS_STOPPED) : ErrorText(error),
                .actionLabel = Text(IDS_TRY_AGAIN),
                .action = std::move(again),
                .details = isStopped ? std::wstring() : ErrorDetails(error)});
}

void FolderView::ShowNotice(Notice::Content content) {
    const bool hadFocus = GetFocus() == m_list.Handle();
    m_notice.Show(std::move(content));
    if (hadFocus) {
        m_notice.Focus();
    }
    ShowWindow(m_list.Handle(), SW_HIDE);
}

void FolderView::Start() {
    if (m_location.empty()) {
        m_tree.ShowRoots();
        GoTo({Roots().front()});
    } else if (!m_listing) { // what was wanted before goes on by itself
        Refresh();
    }
}

void FolderView::Clear(Notice::Content why) {
    DropListing();
    m_location.clear();
    m_isListed = false;
    m_tree.Clear();
    m_list.Show({}, false);
    ShowNotice(std::move(why));
    m_listener.onLocation();
}

void FolderView::MoveList(const RECT& place) {
    for (const HWND window : {m_list.Handle(), m_notice.Handle()}) {
        MoveWindow(window, place.left, place.top, place.right - place.left,
                   place.bottom - place.top, TRUE);
    }
}

void FolderView::FocusList() {
    if (IsShown(m_list.Handle())) {
        SetFocus(m_list.Handle());
    } else {
        m_notice.Focus();
    }
}

} // namespace brevint::explorer
