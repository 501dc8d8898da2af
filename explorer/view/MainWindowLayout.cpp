#include "explorer/view/MainWindow.h"

#include "explorer/view/Controls.h"

#include <algorithm>
#include <cwchar>
#include <iterator>

namespace brevint::explorer {

namespace {

constexpr int kSplitter = 5;
constexpr int kLine = 26;
constexpr int kSmallestPart = 60;

constexpr const wchar_t* kPlacement = L"Placement";
constexpr const wchar_t* kColumns = L"Columns";
constexpr const wchar_t* kTreeWidth = L"TreeWidth";
constexpr const wchar_t* kPaneHeight = L"PaneHeight";

} // namespace

void MainWindow::ApplyFont() {
    FontPtr font = MessageFont(static_cast<UINT>(m_dpi));
    SetFontOfAll(Handle(), font.get());
    m_font = std::move(font);
    const auto scaled = [this](int length) {
        return MulDiv(length, m_dpi, USER_DEFAULT_SCREEN_DPI);
    };
    Send(m_toolbar, TB_SETPADDING, 0, MAKELPARAM(scaled(14), scaled(8)));
    Send(m_toolbar, TB_AUTOSIZE);
}

void MainWindow::OnDpi(int dpi, const RECT* place) {
    m_view->List().Rescale(dpi, m_dpi);
    m_pane->Rescale(dpi, m_dpi);
    m_dpi = dpi;
    ApplyFont();
    SetWindowPos(Handle(), nullptr, place->left, place->top, place->right - place->left,
                 place->bottom - place->top, SWP_NOZORDER | SWP_NOACTIVATE);
    Arrange();
}

RECT MainWindow::MiddlePlace() const {
    RECT client = {};
    RECT toolbar = {};
    RECT status = {};
    GetClientRect(Handle(), &client);
    GetWindowRect(m_toolbar, &toolbar);
    GetWindowRect(m_status, &status);
    const int line = MulDiv(kLine, m_dpi, USER_DEFAULT_SCREEN_DPI);
    client.top = toolbar.bottom - toolbar.top + line;
    client.bottom -= status.bottom - status.top;
    const int splitter = MulDiv(kSplitter, m_dpi, USER_DEFAULT_SCREEN_DPI);
    const int smallest = MulDiv(kSmallestPart, m_dpi, USER_DEFAULT_SCREEN_DPI);
    const int pane = MulDiv(m_paneHeight, m_dpi, USER_DEFAULT_SCREEN_DPI);
    client.bottom = std::max<LONG>(client.top + smallest, client.bottom - pane - splitter);
    return client;
}

void MainWindow::Arrange() {
    const auto scaled = [this](int length) {
        return MulDiv(length, m_dpi, USER_DEFAULT_SCREEN_DPI);
    };
    Send(m_toolbar, TB_AUTOSIZE);
    Send(m_status, WM_SIZE);
    RECT client = {};
    GetClientRect(Handle(), &client);
    const int parts[] = {client.right * 2 / 5, client.right * 3 / 5, -1};
    Send(m_status, SB_SETPARTS, std::size(parts), parts);
    const RECT middle = MiddlePlace();
    const int gap = scaled(4);
    const int height = scaled(kLine) - gap;
    const int top = middle.top - scaled(kLine) + gap / 2;
    const int label = scaled(60);
    const int search = scaled(180);
    const int addressEnd = std::max<int>(2 * label, client.right - search - label - 2 * gap);
    MoveWindow(m_addressLabel, gap, top, label - gap, height, TRUE);
    MoveWindow(m_address, label, top, addressEnd - label, height, TRUE);
    MoveWindow(m_searchLabel, addressEnd + 2 * gap, top, label - gap, height, TRUE);
    MoveWindow(m_search, addressEnd + label + gap, top, search, height, TRUE);
    const int tree = std::min<int>(scaled(m_treeWidth), client.right - scaled(kSmallestPart));
    const int splitter = scaled(kSplitter);
    MoveWindow(m_view->Tree().Handle(), 0, middle.top, tree, middle.bottom - middle.top, TRUE);
    m_view->MoveList({tree + splitter, middle.top, client.right, middle.bottom});
    RECT status = {};
    GetWindowRect(m_status, &status);
    const int paneTop = middle.bottom + splitter;
    MoveWindow(m_pane->Handle(), 0, paneTop, client.right,
               std::max<int>(0, client.bottom - (status.bottom - status.top) - paneTop), TRUE);
}

bool MainWindow::OnSetCursor() const {
    POINT point = {};
    GetCursorPos(&point);
    ScreenToClient(Handle(), &point);
    if (ChildWindowFromPoint(Handle(), point) != Handle()) {
        return false;
    }
    const RECT middle = MiddlePlace();
    if (point.y < middle.top) {
        return false;
    }
    SetCursor(LoadCursorW(nullptr, point.y >= middle.bottom ? IDC_SIZENS : IDC_SIZEWE));
    return true;
}

void MainWindow::OnSplit(POINT point) {
    if (m_split == Split::None) {
        return;
    }
    RECT client = {};
    GetClientRect(Handle(), &client);
    const auto unscaled = [this](int length) {
        return MulDiv(length, USER_DEFAULT_SCREEN_DPI, m_dpi);
    };
    if (m_split == Split::Tree) {
        m_treeWidth = std::clamp(unscaled(point.x), kSmallestPart,
                                 std::max(kSmallestPart, unscaled(client.right) - kSmallestPart));
    } else {
        m_paneHeight = std::clamp(unscaled(client.bottom - point.y), kSmallestPart,
                                  std::max(kSmallestPart, unscaled(client.bottom) / 2));
    }
    Arrange();
}

void MainWindow::RestorePlacement() {
    m_treeWidth = static_cast<int>(
        m_settings.GetNumber(kTreeWidth).value_or(static_cast<unsigned>(m_treeWidth)));
    m_paneHeight = static_cast<int>(
        m_settings.GetNumber(kPaneHeight).value_or(static_cast<unsigned>(m_paneHeight)));
    m_view->List().SetArrangement(m_settings.GetText(kColumns));
    WINDOWPLACEMENT placement = {};
    placement.length = sizeof placement;
    RECT& place = placement.rcNormalPosition; // not in coordinates of the screen
    const std::wstring text = m_settings.GetText(kPlacement);
    m_isMaximized = text.ends_with(L"maximized");
    const bool isKnown = std::swscanf(text.c_str(), L"%ld %ld %ld %ld", &place.left, &place.top,
                                      &place.right, &place.bottom) == 4;
    // A screen that it was on may be gone.
    if (isKnown && MonitorFromRect(&place, MONITOR_DEFAULTTONULL)) {
        SetWindowPlacement(Handle(), &placement); // SW_HIDE: Start shows it
    } else {
        SetWindowPos(Handle(), nullptr, 0, 0, Scaled(Handle(), 1100), Scaled(Handle(), 700),
                     SWP_NOZORDER | SWP_NOMOVE);
    }
}

void MainWindow::SavePlacement() {
    WINDOWPLACEMENT placement = {};
    placement.length = sizeof placement;
    GetWindowPlacement(Handle(), &placement);
    const RECT& place = placement.rcNormalPosition;
    std::wstring text;
    for (const LONG number : {place.left, place.top, place.right, place.bottom}) {
        text += std::to_wstring(number) + L' ';
    }
    m_settings.SetText(kPlacement,
                       text + (placement.showCmd == SW_SHOWMAXIMIZED ? L"maximized" : L"normal"));
    m_settings.SetText(kColumns, m_view->List().Arrangement());
    m_settings.SetNumber(kTreeWidth, static_cast<unsigned>(m_treeWidth));
    m_settings.SetNumber(kPaneHeight, static_cast<unsigned>(m_paneHeight));
}

} // namespace brevint::explorer
