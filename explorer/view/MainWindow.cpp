#include "explorer/view/MainWindow.h"

#include "explorer/model/ErrorText.h"
#include "explorer/resources/Resource.h"
#include "explorer/system/Formats.h"
#include "explorer/system/Text.h"
#include "explorer/view/Controls.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include <shellapi.h>
#include <windowsx.h>

namespace brevint::explorer {

namespace {

constexpr UINT kUpdate = WM_APP + 1;
constexpr UINT_PTR kWaitTimer = 1;
constexpr UINT kSecond = 1000;

constexpr UINT kTools[] = {IDM_UP,   IDM_REFRESH,   IDM_NEW_FOLDER, IDM_UPLOAD, IDM_DOWNLOAD,
                           IDM_OPEN, IDM_CHECK_OUT, IDM_CHECK_IN,   IDM_DELETE, IDM_STOP};

} // namespace

MainWindow::MainWindow(Surroundings surroundings)
    : m_surroundings(std::move(surroundings)), m_settings(m_surroundings.settings),
      m_keys(LoadAcceleratorsW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(IDR_ALWAYS))),
      m_itemKeys(LoadAcceleratorsW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(IDR_ITEMS))),
      m_worker(m_surroundings.dispatcher.GetExecutor()),
      m_session(m_worker, m_surroundings.dispatcher.GetExecutor(),
                {.onCallsChanged = [this] { UpdateLater(); },
                 .onSignInNeeded =
                     [this] {
                         m_account.AskToSignIn(Text(IDS_SESSION_ENDED));
                     }}),
      m_dialogs(m_surroundings.dispatcher.GetExecutor()),
      m_account(m_session, m_dialogs, m_settings, m_surroundings.store,
                {.onSignedIn = [this] { OnSignedIn(); },
                 .onSignedOut = [this] { OnSignedOut(); },
                 .onLeaving =
                     [this] {
                         m_transfers.Leave();
                         m_view->Clear({});
                     },
                 .onUnreachable =
                     [this](const Error& error, std::function<void()> again) {
                         m_view->Clear({.text = ErrorText(error),
                                        .actionLabel = Text(IDS_TRY_AGAIN),
                                        .action = std::move(again),
                                        .details = ErrorDetails(error)});
                     }}) {
    m_transfers.SetChanged([this](std::optional<std::size_t> index) { OnTransfersChanged(index); });
    Create({.className = L"BrevintExplorer",
            .title = Text(IDS_TITLE),
            .style = WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN,
            .exStyle = WS_EX_ACCEPTFILES | WS_EX_CONTROLPARENT,
            .icon = LoadIconW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(IDI_EXPLORER)),
            .background = GetSysColorBrush(COLOR_BTNFACE)});
    SetMenu(Handle(), LoadMenuW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(IDR_MENU)));
    m_dialogs.SetOwner(Handle());
    CreateParts();
    RestorePlacement();
}

MainWindow::~MainWindow() {
    m_transfers.SetChanged({});
    m_dialogs.CloseAll();
    Destroy();
}

void MainWindow::CreateParts() {
    CreateToolbar();
    m_addressLabel = CreateControl(Handle(), {.className = WC_STATICW,
                                              .id = IDC_ADDRESS_LABEL,
                                              .style = SS_CENTERIMAGE,
                                              .name = Text(IDS_ADDRESS)});
    m_address = CreateControl(Handle(), {.className = WC_EDITW,
                                         .id = IDC_ADDRESS,
                                         .style = WS_TABSTOP | ES_AUTOHSCROLL,
                                         .exStyle = WS_EX_CLIENTEDGE});
    m_searchLabel = CreateControl(Handle(), {.className = WC_STATICW,
                                             .id = IDC_SEARCH_LABEL,
                                             .style = SS_CENTERIMAGE,
                                             .name = Text(IDS_SEARCH)});
    m_search = CreateControl(Handle(), {.className = WC_EDITW,
                                        .id = IDC_SEARCH,
                                        .style = WS_TABSTOP | ES_AUTOHSCROLL,
                                        .exStyle = WS_EX_CLIENTEDGE});
    m_view =
        std::make_unique<FolderView>(Handle(), m_session,
                                     FolderView::Listener{.onLocation = [this] { OnLocation(); },
                                                          .onSelection = [this] { UpdateLater(); },
                                                          .onOpen =
                                                              [this] {
                                                                  OnCommand(IDM_OPEN, 0);
                                                              }});
    m_commands = std::make_unique<ItemCommands>(m_session, *m_view, m_dialogs, m_transfers,
                                                m_surroundings.desktop);
    m_commands->SetOwner(Handle());
    m_pane = std::make_unique<TransfersPane>(Handle(), m_transfers, [this] { UpdateLater(); });
    m_status = CreateControl(
        Handle(), {.className = STATUSCLASSNAMEW, .id = IDC_STATUS, .style = SBARS_SIZEGRIP});
    m_view->Clear({.text = Text(IDS_NOT_SIGNED_IN)});
    m_pane->Update(std::nullopt);
    m_dpi = static_cast<int>(GetDpiForWindow(Handle()));
    ApplyFont();
}

void MainWindow::CreateToolbar() {
    m_toolbar = CreateControl(Handle(), {.className = TOOLBARCLASSNAMEW,
                                         .id = IDC_TOOLBAR,
                                         .style = TBSTYLE_FLAT | TBSTYLE_LIST | CCS_NODIVIDER});
    Send(m_toolbar, TB_BUTTONSTRUCTSIZE, sizeof(TBBUTTON));
    Send(m_toolbar, TB_SETBITMAPSIZE, 0, MAKELPARAM(0, 0));
    for (std::size_t i = 0; i < std::size(kTools); ++i) {
        const std::wstring label = Text(IDS_TOOL_FIRST + static_cast<UINT>(i));
        TBBUTTON button = {};
        button.iBitmap = I_IMAGENONE;
        button.idCommand = static_cast<int>(kTools[i]);
        button.fsStyle = BTNS_AUTOSIZE | BTNS_SHOWTEXT;
        button.iString = reinterpret_cast<INT_PTR>(label.c_str());
        Send(m_toolbar, TB_ADDBUTTONSW, 1, &button);
    }
}

void MainWindow::Start(int showCommand) {
    const bool isUsual = showCommand == SW_SHOWNORMAL || showCommand == SW_SHOWDEFAULT;
    ShowWindow(Handle(), m_isMaximized && isUsual ? SW_SHOWMAXIMIZED : showCommand);
    Update();
    m_account.Start();
}

bool MainWindow::Translate(MSG& message) {
    const HWND top = GetAncestor(message.hwnd, GA_ROOT);
    if (top != Handle()) {
        const Dialog* const dialog = m_dialogs.Top();
        return dialog && dialog->Handle() == top && IsDialogMessageW(top, &message);
    }
    if (!IsWindowEnabled(Handle())) {
        return false;
    }
    if (TranslateAcceleratorW(Handle(), m_keys, &message) ||
        (GetFocus() == m_view->List().Handle() &&
         TranslateAcceleratorW(Handle(), m_itemKeys, &message))) {
        m_usedAlt = m_usedAlt || message.message == WM_SYSKEYDOWN;
        return true;
    }
    // An Alt that was part of a key of ours must not open the menu when it is let go.
    if ((message.message == WM_SYSKEYUP || message.message == WM_KEYUP) &&
        message.wParam == VK_MENU && std::exchange(m_usedAlt, false)) {
        return true;
    }
    return IsDialogMessageW(Handle(), &message);
}

LRESULT MainWindow::OnMessage(UINT message, WPARAM wide, LPARAM longer) {
    switch (message) {
    case WM_SIZE:
        if (m_status) {
            Arrange();
        }
        return 0;
    case WM_GETMINMAXINFO: {
        auto& limits = *reinterpret_cast<MINMAXINFO*>(longer);
        limits.ptMinTrackSize = {Scaled(Handle(), 560), Scaled(Handle(), 380)};
        return 0;
    }
    case WM_COMMAND: OnCommand(LOWORD(wide), HIWORD(wide)); return 0;
    case WM_NOTIFY: return OnNotify(*reinterpret_cast<const NMHDR*>(longer));
    case WM_INITMENUPOPUP: {
        const auto menu = reinterpret_cast<HMENU>(wide);
        for (int i = 0; i < GetMenuItemCount(menu); ++i) {
            const UINT id = GetMenuItemID(menu, i);
            if (FindCommand(id)) {
                EnableMenuItem(menu, id, MF_BYCOMMAND | (IsEnabled(id) ? MF_ENABLED : MF_GRAYED));
            }
        }
        CheckMenuRadioItem(menu, IDM_SORT_FIRST, IDM_SORT_FIRST + kColumnCount - 1,
                           IDM_SORT_FIRST + static_cast<UINT>(m_view->List().Model().SortColumn()),
                           MF_BYCOMMAND);
        return 0;
    }
    case WM_CONTEXTMENU:
        OnContextMenu(reinterpret_cast<HWND>(wide), {GET_X_LPARAM(longer), GET_Y_LPARAM(longer)});
        return 0;
    case WM_DROPFILES: OnDrop(reinterpret_cast<HDROP>(wide)); return 0;
    case WM_ACTIVATE:
        if (LOWORD(wide) == WA_INACTIVE && IsChild(Handle(), GetFocus())) {
            m_lastFocus = GetFocus();
        }
        return Window::OnMessage(message, wide, longer);
    case WM_SETFOCUS:
        if (m_lastFocus && IsWindowVisible(m_lastFocus)) {
            SetFocus(m_lastFocus);
        } else if (m_view) {
            m_view->FocusList();
        }
        return 0;
    case WM_SETCURSOR:
        return LOWORD(longer) == HTCLIENT && OnSetCursor()
                   ? TRUE
                   : Window::OnMessage(message, wide, longer);
    case WM_LBUTTONDOWN: {
        const RECT middle = MiddlePlace();
        if (GET_Y_LPARAM(longer) < middle.top) {
            return 0;
        }
        m_split = GET_Y_LPARAM(longer) >= middle.bottom ? Split::Pane : Split::Tree;
        SetCapture(Handle());
        return 0;
    }
    case WM_MOUSEMOVE: OnSplit({GET_X_LPARAM(longer), GET_Y_LPARAM(longer)}); return 0;
    case WM_LBUTTONUP:
    case WM_CAPTURECHANGED:
        if (std::exchange(m_split, Split::None) != Split::None) {
            ReleaseCapture();
        }
        return 0;
    case WM_TIMER:
        m_transfers.Look();
        UpdateStatus();
        return 0;
    case kUpdate:
        m_updateIsDue = false;
        Update();
        return 0;
    case WM_DPICHANGED: OnDpi(LOWORD(wide), reinterpret_cast<const RECT*>(longer)); return 0;
    case WM_SETTINGCHANGE:
    case WM_THEMECHANGED:
        ApplyFont();
        Arrange();
        return 0;
    case WM_CLOSE: OnClose(); return 0;
    case WM_ENDSESSION:
        if (wide) {
            SavePlacement();
        }
        return 0;
    case WM_DESTROY:
        SavePlacement();
        if (m_surroundings.onClosed) {
            m_surroundings.onClosed();
        }
        return 0;
    default: return Window::OnMessage(message, wide, longer);
    }
}

LRESULT MainWindow::OnNotify(const NMHDR& header) {
    if (!m_view) {
        return 0;
    }
    if (header.hwndFrom == m_view->List().Handle()) {
        return m_view->List().OnNotify(header);
    }
    return header.hwndFrom == m_view->Tree().Handle() ? m_view->Tree().OnNotify(header) : 0;
}

void MainWindow::OnCommand(UINT id, UINT notification) {
    if (id == IDC_SEARCH && notification == EN_CHANGE) {
        m_view->Filter(GetText(m_search));
    } else if (id == IDOK) {
        OnEnter();
    } else if (id == IDCANCEL) {
        OnEscape();
    } else if (id >= IDM_SORT_FIRST && id < IDM_SORT_FIRST + kColumnCount) {
        m_view->List().SortBy(static_cast<Column>(id - IDM_SORT_FIRST));
    } else if (const CommandRow* const row = FindCommand(id); row && row->isEnabled(*this)) {
        row->run(*this);
    }
}

void MainWindow::OnEnter() {
    if (GetFocus() == m_address) {
        m_view->GoToPath(Utf8(GetText(m_address)));
        m_view->FocusList();
    } else if (GetFocus() == m_pane->List()) {
        OnCommand(IDM_TRANSFER_DETAILS, 0);
    } else if (GetFocus() == m_search || GetFocus() == m_view->Tree().Handle()) {
        m_view->FocusList();
    }
}

void MainWindow::OnEscape() {
    if (GetFocus() == m_search) {
        SetWindowTextW(m_search, L"");
        m_view->FocusList();
    } else if (GetFocus() == m_address) {
        OnLocation();
        m_view->FocusList();
    } else {
        m_session.StopAll();
    }
}

void MainWindow::OnDrop(HDROP drop) {
    std::vector<std::filesystem::path> paths;
    for (UINT i = 0; i < DragQueryFileW(drop, 0xFFFFFFFF, nullptr, 0); ++i) {
        std::wstring path(DragQueryFileW(drop, i, nullptr, 0), L'\0');
        DragQueryFileW(drop, i, path.data(), static_cast<UINT>(path.size()) + 1);
        paths.emplace_back(path);
    }
    DragFinish(drop);
    if (IsEnabled(IDM_UPLOAD) && IsWindowEnabled(Handle())) {
        m_commands->Upload(paths);
    }
}

void MainWindow::OnContextMenu(HWND where, POINT point) {
    const bool isList = where == m_view->List().Handle() || where == m_view->Message().Handle();
    if (!isList && where != m_pane->List()) {
        return;
    }
    if (point.x == -1 && point.y == -1) { // asked for by a key
        point = {Scaled(Handle(), 16), Scaled(Handle(), 32)};
        ClientToScreen(where, &point);
    }
    const UINT id = isList ? IDR_ITEM_MENU : IDR_TRANSFER_MENU;
    const MenuPtr menu(LoadMenuW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(id)));
    TrackPopupMenuEx(GetSubMenu(menu.get(), 0), TPM_RIGHTBUTTON, point.x, point.y, Handle(),
                     nullptr);
}

void MainWindow::OnClose() {
    AskIfTransfersRun(IDS_ASK_CLOSE, IDS_DO_CLOSE, [this] {
        m_dialogs.CloseAll();
        m_session.Close(); // no reply may come to a window that is gone
        m_transfers.CancelAll();
        DestroyWindow(Handle());
    });
}

void MainWindow::SignOut() {
    AskIfTransfersRun(IDS_ASK_SIGN_OUT, IDM_SIGN_OUT, [this] {
        m_transfers.CancelAll();
        m_account.SignOut();
    });
}

void MainWindow::AskIfTransfersRun(UINT question, UINT yesLabel, std::function<void()> yes) {
    const std::size_t count = m_transfers.ActiveCount();
    if (count == 0) {
        yes();
    } else if (!m_dialogs.Top()) {
        m_dialogs.ShowMessage({.icon = IDI_WARNING,
                               .title = Text(IDS_TITLE),
                               .text = Text(question, {NumberText(count)}),
                               .choices = {{Text(yesLabel), std::move(yes)}, {Text(IDS_CANCEL)}},
                               .defaultChoice = 1});
    }
}

void MainWindow::OnSignedIn() {
    m_askedForTransfers = false;
    m_view->Start();
    m_view->FocusList();
    UpdateLater();
}

void MainWindow::OnSignedOut() {
    if (!m_session.IsOpen() || m_view->Current().empty()) {
        m_view->Clear({.text = Text(IDS_NOT_SIGNED_IN),
                       .actionLabel = Text(IDS_DO_SIGN_IN),
                       .action = [this] {
                           m_account.AskToSignIn();
                       }});
        m_view->FocusList();
    }
    UpdateLater();
}

void MainWindow::OnLocation() {
    SetText(m_address, DisplayText(Wide(PathOf(m_view ? m_view->Current() : Location()))));
    SetText(m_search, L"");
    UpdateLater();
}

void MainWindow::OnTransfersChanged(std::optional<std::size_t> index) {
    m_pane->Update(index);
    // Whoever does not want to sign in now is not asked again for the same transfers.
    if (!m_transfers.NeedsSignIn()) {
        m_askedForTransfers = false;
    } else if (!std::exchange(m_askedForTransfers, true)) {
        m_account.AskToSignIn(Text(IDS_SESSION_ENDED));
    }
    UpdateLater();
}

void MainWindow::UpdateLater() {
    if (Handle() && !std::exchange(m_updateIsDue, true)) {
        PostMessageW(Handle(), kUpdate, 0, 0);
    }
}

void MainWindow::Update() {
    for (const UINT id : kTools) {
        Send(m_toolbar, TB_ENABLEBUTTON, id, IsEnabled(id) ? TRUE : FALSE);
    }
    SetText(Handle(), m_view->IsListed() ? Text(IDS_TITLE_IN_FOLDER,
                                                {DisplayText(Wide(m_view->Current().back().name))})
                                         : Text(IDS_TITLE));
    const bool waits = m_session.IsBusy() || m_transfers.ActiveCount() > 0;
    if (waits != std::exchange(m_waits, waits)) {
        if (waits) {
            SetTimer(Handle(), kWaitTimer, kSecond, nullptr);
        } else {
            KillTimer(Handle(), kWaitTimer);
        }
    }
    UpdateStatus();
}

void MainWindow::UpdateStatus() {
    const FolderModel& model = m_view->List().Model();
    const std::size_t selected = m_view->List().GetSelection().count;
    std::wstring text = Text(IDS_STATUS_READY);
    if (m_session.IsBusy()) {
        const std::chrono::seconds wait = m_session.LongestWait();
        text = wait < kLongSilence ? Text(IDS_STATUS_BUSY)
                                   : Text(IDS_STATUS_SILENT, {DurationText(wait)});
    } else if (selected > 0) {
        text = Text(IDS_STATUS_SELECTED, {NumberText(selected), NumberText(model.RowCount())});
    } else if (m_view->IsListed() && model.RowCount() < model.ItemCount()) {
        text = Text(IDS_STATUS_FILTERED,
                    {NumberText(model.RowCount()), NumberText(model.ItemCount())});
    } else if (m_view->IsListed()) {
        text = Text(IDS_STATUS_ITEMS, {NumberText(model.ItemCount()), SizeText(model.ByteCount())});
    }
    const std::size_t active = m_transfers.ActiveCount();
    const std::wstring transfers =
        active > 0 ? Text(IDS_STATUS_TRANSFERS, {NumberText(active)}) : std::wstring();
    const std::wstring user =
        m_account.IsSignedIn()
            ? Text(IDS_STATUS_USER, {Wide(m_account.User()), Wide(m_session.Url())})
            : Text(IDS_NOT_SIGNED_IN);
    int part = 0;
    for (const std::wstring& shown : {text, transfers, user}) {
        Send(m_status, SB_SETTEXTW, part++, shown.c_str());
    }
}

void MainWindow::FocusNextPane() {
    const HWND panes[] = {m_address, m_search, m_view->Tree().Handle(), m_view->List().Handle(),
                          m_pane->List()};
    const auto* const now = std::ranges::find(panes, GetFocus());
    const std::size_t next =
        now == std::end(panes) ? 0 : static_cast<std::size_t>(now - panes + 1) % std::size(panes);
    if (panes[next] == m_view->List().Handle()) {
        m_view->FocusList();
    } else {
        SetFocus(panes[next]);
    }
}

} // namespace brevint::explorer
