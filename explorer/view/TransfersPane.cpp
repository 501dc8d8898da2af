#include "explorer/view/TransfersPane.h"

#include "explorer/resources/Resource.h"
#include "explorer/system/Text.h"
#include "explorer/view/Controls.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include <windowsx.h>

namespace brevint::explorer {

namespace {

constexpr int kProgressColumn = 2;
constexpr int kStateColumn = 3;
constexpr int kWidths[] = {240, 130, 130, 0};
constexpr UINT kButtons[] = {IDM_CANCEL, IDM_RETRY, IDM_CLEAR};

} // namespace

TransfersPane::TransfersPane(HWND parent, TransfersModel& model, std::function<void()> onChange)
    : m_model(model), m_onChange(std::move(onChange)) {
    Create({.className = L"BrevintTransfers",
            .parent = parent,
            .style = WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN,
            .exStyle = WS_EX_CONTROLPARENT,
            .id = IDC_TRANSFERS,
            .background = GetSysColorBrush(COLOR_BTNFACE)});
    m_list = CreateControl(Handle(),
                           {.className = WC_LISTVIEWW,
                            .id = IDC_TRANSFER_LIST,
                            .style = WS_TABSTOP | LVS_REPORT | LVS_OWNERDATA | LVS_SHOWSELALWAYS,
                            .exStyle = WS_EX_CLIENTEDGE,
                            .name = Text(IDS_TRANSFERS)});
    ListView_SetExtendedListViewStyle(m_list,
                                      LVS_EX_DOUBLEBUFFER | LVS_EX_FULLROWSELECT | LVS_EX_LABELTIP);
    for (int i = 0; i < static_cast<int>(std::size(kWidths)); ++i) {
        std::wstring title = Text(IDS_TRANSFER_NAME + static_cast<UINT>(i));
        LVCOLUMNW column = {};
        column.mask = LVCF_TEXT | LVCF_WIDTH;
        column.cx = Scaled(m_list, kWidths[i]);
        column.pszText = title.data();
        ListView_InsertColumn(m_list, i, &column);
    }
    for (const UINT id : kButtons) {
        CreateControl(Handle(),
                      {.className = WC_BUTTONW, .id = id, .style = WS_TABSTOP, .name = Text(id)});
    }
}

void TransfersPane::Update(std::optional<std::size_t> index) {
    if (index) {
        ListView_RedrawItems(m_list, static_cast<int>(*index), static_cast<int>(*index));
    } else {
        ListView_SetItemCountEx(m_list, static_cast<int>(m_model.Count()), LVSICF_NOSCROLL);
        InvalidateRect(m_list, nullptr, FALSE);
    }
    const bool states[] = {CanCancel(), CanRetry(), CanClear()};
    for (std::size_t i = 0; i < std::size(kButtons); ++i) {
        EnableWindow(GetDlgItem(Handle(), static_cast<int>(kButtons[i])), states[i] ? TRUE : FALSE);
    }
}

void TransfersPane::CancelSelected() {
    for (const std::size_t index : Selected()) {
        m_model.Cancel(index);
    }
}

void TransfersPane::RetrySelected(const std::shared_ptr<Client>& client) {
    for (const std::size_t index : Selected()) {
        m_model.Retry(index, client);
    }
}

void TransfersPane::ClearEnded() {
    m_model.ClearEnded();
    // The list goes by places, at which other transfers stand now.
    ListView_SetItemState(m_list, -1, 0, LVIS_SELECTED | LVIS_FOCUSED);
}

const TransfersModel::Row* TransfersPane::SelectedFailure() const {
    const std::vector<std::size_t> selected = Selected();
    const TransfersModel::Row* const row =
        selected.size() == 1 ? &m_model.At(selected.front()) : nullptr;
    return row && row->progress.state == TransferState::Failed ? row : nullptr;
}

std::vector<std::size_t> TransfersPane::Selected() const {
    std::vector<std::size_t> selected;
    for (int row = -1; (row = ListView_GetNextItem(m_list, row, LVNI_SELECTED)) >= 0;) {
        if (static_cast<std::size_t>(row) < m_model.Count()) {
            selected.push_back(static_cast<std::size_t>(row));
        }
    }
    return selected;
}

bool TransfersPane::HasSelected(bool (*fits)(const TransfersModel::Row&)) const {
    return std::ranges::any_of(Selected(),
                               [&](std::size_t index) { return fits(m_model.At(index)); });
}

LRESULT TransfersPane::OnMessage(UINT message, WPARAM wide, LPARAM longer) {
    switch (message) {
    case WM_SIZE: Arrange(); return 0;
    case WM_NOTIFY: return OnNotify(*reinterpret_cast<NMHDR*>(longer));
    case WM_COMMAND: return SendMessageW(GetParent(Handle()), message, wide, longer);
    case WM_CONTEXTMENU: return SendMessageW(GetParent(Handle()), message, wide, longer);
    default: return Window::OnMessage(message, wide, longer);
    }
}

LRESULT TransfersPane::OnNotify(NMHDR& header) {
    if (header.hwndFrom != m_list) {
        return 0;
    }
    switch (header.code) {
    case LVN_GETDISPINFOW: {
        LVITEMW& item = reinterpret_cast<NMLVDISPINFOW&>(header).item;
        if ((item.mask & LVIF_TEXT) != 0 &&
            static_cast<std::size_t>(item.iItem) < m_model.Count()) {
            const std::wstring text = CellText(static_cast<std::size_t>(item.iItem), item.iSubItem);
            lstrcpynW(item.pszText, text.c_str(), item.cchTextMax);
        }
        return 0;
    }
    case LVN_KEYDOWN:
        if (reinterpret_cast<const NMLVKEYDOWN&>(header).wVKey == VK_DELETE) {
            CancelSelected();
        }
        return 0;
    case NM_DBLCLK:
        SendMessageW(GetParent(Handle()), WM_COMMAND, IDM_TRANSFER_DETAILS, 0);
        return 0;
    case LVN_ITEMCHANGED:
    case LVN_ODSTATECHANGED:
        Update(std::nullopt);
        m_onChange();
        return 0;
    case NM_CUSTOMDRAW: return OnDraw(reinterpret_cast<const NMLVCUSTOMDRAW&>(header));
    default: return 0;
    }
}

std::wstring TransfersPane::CellText(std::size_t row, int column) const {
    const TransfersModel::Row& shown = m_model.At(row);
    switch (column) {
    case 0: return DisplayText(Wide(shown.order.name));
    case 1: return Text(IDS_KIND_DOWNLOAD + static_cast<UINT>(shown.order.kind));
    case kProgressColumn: {
        const auto percentage = Percentage(shown.progress);
        return percentage ? std::to_wstring(*percentage) + L" %" : L"";
    }
    default: return StateText(shown);
    }
}

LRESULT TransfersPane::OnDraw(const NMLVCUSTOMDRAW& draw) {
    switch (draw.nmcd.dwDrawStage) {
    case CDDS_PREPAINT: return CDRF_NOTIFYITEMDRAW;
    case CDDS_ITEMPREPAINT: return CDRF_NOTIFYSUBITEMDRAW;
    case CDDS_ITEMPREPAINT | CDDS_SUBITEM:
        if (draw.iSubItem == kProgressColumn && draw.nmcd.dwItemSpec < m_model.Count()) {
            DrawBar(draw.nmcd.hdc, static_cast<int>(draw.nmcd.dwItemSpec));
            return CDRF_SKIPDEFAULT;
        }
        return CDRF_DODEFAULT;
    default: return CDRF_DODEFAULT;
    }
}

void TransfersPane::DrawBar(HDC context, int row) const {
    RECT place = {};
    ListView_GetSubItemRect(m_list, row, kProgressColumn, LVIR_BOUNDS, &place);
    const int margin = Scaled(m_list, 2);
    InflateRect(&place, -margin, -margin);
    const Progress& progress = m_model.At(static_cast<std::size_t>(row)).progress;
    RECT done = place;
    done.right = place.left + MulDiv(place.right - place.left,
                                     static_cast<int>(Percentage(progress).value_or(0)), 100);
    const bool hasGoneWrong =
        progress.state == TransferState::Failed || progress.state == TransferState::Cancelled;
    FillRect(context, &place, GetSysColorBrush(COLOR_BTNFACE));
    FillRect(context, &done, GetSysColorBrush(hasGoneWrong ? COLOR_BTNSHADOW : COLOR_HIGHLIGHT));
    FrameRect(context, &place, GetSysColorBrush(COLOR_BTNSHADOW));
    // The text is drawn twice, so that each half stands out from what is below it.
    const std::wstring text = CellText(static_cast<std::size_t>(row), kProgressColumn);
    const int state = SaveDC(context);
    SetBkMode(context, TRANSPARENT);
    for (const bool isOnBar : {true, false}) {
        SaveDC(context);
        IntersectClipRect(context, isOnBar ? done.left : done.right, place.top,
                          isOnBar ? done.right : place.right, place.bottom);
        SetTextColor(context,
                     GetSysColor(isOnBar && !hasGoneWrong ? COLOR_HIGHLIGHTTEXT : COLOR_BTNTEXT));
        RECT all = place;
        DrawTextW(context, text.c_str(), -1, &all, DT_CENTER | DT_VCENTER | DT_SINGLELINE);
        RestoreDC(context, -1);
    }
    RestoreDC(context, state);
}

void TransfersPane::Rescale(int newDpi, int oldDpi) {
    for (int i = 0; i < static_cast<int>(std::size(kWidths)); ++i) {
        ListView_SetColumnWidth(m_list, i,
                                MulDiv(ListView_GetColumnWidth(m_list, i), newDpi, oldDpi));
    }
}

void TransfersPane::Arrange() {
    RECT client = {};
    GetClientRect(Handle(), &client);
    const int gap = Scaled(Handle(), 6);
    const int width = Scaled(Handle(), 110);
    const int height = Scaled(Handle(), 26);
    MoveWindow(m_list, 0, 0, std::max(0L, client.right - width - 2 * gap), client.bottom, TRUE);
    ListView_SetColumnWidth(m_list, kStateColumn, LVSCW_AUTOSIZE_USEHEADER); // takes what is left
    int top = 0;
    for (const UINT id : kButtons) {
        MoveWindow(GetDlgItem(Handle(), static_cast<int>(id)), client.right - width - gap, top,
                   width, height, TRUE);
        top += height + gap;
    }
}

} // namespace brevint::explorer
