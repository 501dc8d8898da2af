#include "explorer/view/FolderList.h"

#include "explorer/resources/Resource.h"
#include "explorer/system/Text.h"
#include "explorer/view/Controls.h"
#include "explorer/view/Icons.h"

#include <algorithm>
#include <array>
#include <sstream>
#include <utility>

namespace brevint::explorer {

namespace {

constexpr std::array<int, kColumnCount> kWidths = {250, 75, 85, 125, 105, 205};

bool IsNumber(std::size_t column) {
    return column == static_cast<std::size_t>(Column::Size);
}

} // namespace

FolderList::FolderList(HWND parent, Listener listener)
    : m_listener(std::move(listener)),
      m_handle(CreateControl(parent, {.className = WC_LISTVIEWW,
                                      .id = IDC_LIST,
                                      .style = WS_TABSTOP | LVS_REPORT | LVS_OWNERDATA |
                                               LVS_SHOWSELALWAYS | LVS_SHAREIMAGELISTS,
                                      .exStyle = WS_EX_CLIENTEDGE,
                                      .name = Text(IDS_ITEMS)})) {
    ListView_SetExtendedListViewStyle(m_handle, LVS_EX_DOUBLEBUFFER | LVS_EX_FULLROWSELECT |
                                                    LVS_EX_HEADERDRAGDROP | LVS_EX_LABELTIP);
    ListView_SetImageList(m_handle, SmallIcons(m_handle), LVSIL_SMALL);
    for (std::size_t i = 0; i < kColumnCount; ++i) {
        std::wstring title = Text(IDS_COLUMN_NAME + static_cast<UINT>(i));
        LVCOLUMNW column = {};
        column.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_FMT;
        column.fmt = IsNumber(i) ? LVCFMT_RIGHT : LVCFMT_LEFT;
        column.cx = Scaled(m_handle, kWidths[i]);
        column.pszText = title.data();
        ListView_InsertColumn(m_handle, static_cast<int>(i), &column);
    }
    ShowSortColumn();
}

LRESULT FolderList::OnNotify(const NMHDR& header) {
    switch (header.code) {
    case LVN_GETDISPINFOW:
        OnDisplay(reinterpret_cast<NMLVDISPINFOW*>(const_cast<NMHDR*>(&header))->item);
        break;
    case LVN_COLUMNCLICK:
        SortBy(static_cast<Column>(reinterpret_cast<const NMLISTVIEW&>(header).iSubItem));
        break;
    case LVN_ODFINDITEMW: {
        const auto& search = reinterpret_cast<const NMLVFINDITEMW&>(header);
        if ((search.lvfi.flags & (LVFI_STRING | LVFI_PARTIAL)) == 0) {
            return -1;
        }
        const auto row = m_model.RowOfPrefix(search.lvfi.psz,
                                             static_cast<std::size_t>(std::max(0, search.iStart)));
        return row ? static_cast<LRESULT>(*row) : -1;
    }
    case LVN_ITEMCHANGED:
    case LVN_ODSTATECHANGED:
        m_selection.reset();
        if (!m_isChanging) {
            m_listener.onSelection();
        }
        break;
    case NM_DBLCLK: m_listener.onOpen(); break;
    default: break;
    }
    return 0;
}

void FolderList::OnDisplay(LVITEMW& item) {
    const auto row = static_cast<std::size_t>(item.iItem);
    if (row >= m_model.RowCount()) {
        return;
    }
    const auto column = static_cast<Column>(item.iSubItem);
    if ((item.mask & LVIF_TEXT) != 0) {
        lstrcpynW(item.pszText, m_model.CellText(row, column).c_str(), item.cchTextMax);
    }
    if ((item.mask & LVIF_IMAGE) != 0) {
        const std::wstring name = m_model.CellText(row, Column::Name);
        const std::size_t dot = name.rfind(L'.');
        const bool isFolder = m_model.IsFolder(row);
        const std::wstring kind = isFolder                    ? L"/"
                                  : dot == std::wstring::npos ? L""
                                                              : name.substr(dot);
        const auto [icon, isNew] = m_icons.try_emplace(kind);
        if (isNew) {
            icon->second = isFolder ? FolderIcon() : FileIcon(kind);
        }
        item.iImage = icon->second;
    }
}

void FolderList::Show(FolderModel model, bool keepsSelection) {
    Change(
        [&] {
            model.Arrange(m_model.SortColumn(), m_model.IsDescending(), m_filter);
            m_model = std::move(model);
        },
        keepsSelection);
}

void FolderList::Filter(const std::wstring& text) {
    m_filter = text;
    Change([&] { m_model.Arrange(m_model.SortColumn(), m_model.IsDescending(), text); });
}

void FolderList::SortBy(Column column) {
    Sort(column, column == m_model.SortColumn() && !m_model.IsDescending());
}

void FolderList::Sort(Column column, bool isDescending) {
    Change([&] { m_model.Arrange(column, isDescending, m_filter); });
    ShowSortColumn();
}

void FolderList::Change(const std::function<void()>& change, bool keepsSelection) {
    BeginChange();
    std::vector<std::string> selected;
    std::string focused;
    if (keepsSelection) {
        VisitSelected([&](std::size_t row) { selected.emplace_back(m_model.IdOf(row)); });
        const int focus = ListView_GetNextItem(m_handle, -1, LVNI_FOCUSED);
        if (focus >= 0 && static_cast<std::size_t>(focus) < m_model.RowCount()) {
            focused = m_model.IdOf(static_cast<std::size_t>(focus));
        }
    }
    change();
    ListView_SetItemState(m_handle, -1, 0, LVIS_SELECTED | LVIS_FOCUSED);
    ListView_SetItemCountEx(m_handle, static_cast<int>(m_model.RowCount()),
                            keepsSelection ? LVSICF_NOSCROLL : 0);
    const std::set<std::string_view> wanted(selected.begin(), selected.end());
    std::vector<int> rows;
    for (std::size_t row = 0; !wanted.empty() && row < m_model.RowCount(); ++row) {
        if (wanted.contains(m_model.IdOf(row))) {
            rows.push_back(static_cast<int>(row));
        }
    }
    if (rows.size() == m_model.RowCount()) {
        rows = {-1}; // all of them, in one message
    }
    for (const int row : rows) {
        ListView_SetItemState(m_handle, row, LVIS_SELECTED, LVIS_SELECTED);
    }
    const int focus = static_cast<int>(m_model.RowOf(focused).value_or(0));
    ListView_SetItemState(m_handle, focus, LVIS_FOCUSED, LVIS_FOCUSED);
    EndChange();
}

void FolderList::BeginChange() {
    m_isChanging = true;
    Send(m_handle, WM_SETREDRAW, FALSE);
}

void FolderList::EndChange() {
    Send(m_handle, WM_SETREDRAW, TRUE);
    InvalidateRect(m_handle, nullptr, FALSE);
    m_selection.reset();
    m_isChanging = false;
    m_listener.onSelection();
}

template <class Visitor>
void FolderList::VisitSelected(Visitor visit) const {
    for (int row = -1; (row = ListView_GetNextItem(m_handle, row, LVNI_SELECTED)) >= 0;) {
        if (static_cast<std::size_t>(row) < m_model.RowCount()) {
            visit(static_cast<std::size_t>(row));
        }
    }
}

Selection FolderList::GetSelection() const {
    if (!m_selection) {
        Selection& selection = m_selection.emplace();
        VisitSelected([&](std::size_t row) {
            ++selection.count;
            selection.files += m_model.IsFolder(row) ? 0U : 1U;
            selection.lockedFiles += !m_model.IsFolder(row) && m_model.IsLocked(row) ? 1U : 0U;
        });
    }
    return *m_selection;
}

std::vector<Item> FolderList::SelectedItems() const {
    std::vector<Item> items;
    VisitSelected([&](std::size_t row) { items.push_back(m_model.ItemAt(row)); });
    return items;
}

void FolderList::Select(std::string_view id) {
    if (const auto row = m_model.RowOf(id)) {
        constexpr UINT kBoth = LVIS_SELECTED | LVIS_FOCUSED;
        ListView_SetItemState(m_handle, -1, 0, LVIS_SELECTED);
        ListView_SetItemState(m_handle, static_cast<int>(*row), kBoth, kBoth);
        ListView_EnsureVisible(m_handle, static_cast<int>(*row), FALSE);
    }
}

void FolderList::SelectAll() {
    BeginChange();
    ListView_SetItemState(m_handle, -1, LVIS_SELECTED, LVIS_SELECTED);
    EndChange();
}

void FolderList::ShowSortColumn() {
    const HWND header = ListView_GetHeader(m_handle);
    for (int i = 0; i < static_cast<int>(kColumnCount); ++i) {
        HDITEMW item = {};
        item.mask = HDI_FORMAT;
        Header_GetItem(header, i, &item);
        item.fmt &= ~(HDF_SORTUP | HDF_SORTDOWN);
        if (i == static_cast<int>(m_model.SortColumn())) {
            item.fmt |= m_model.IsDescending() ? HDF_SORTDOWN : HDF_SORTUP;
        }
        Header_SetItem(header, i, &item);
    }
}

std::wstring FolderList::Arrangement() const {
    const int dpi = static_cast<int>(GetDpiForWindow(m_handle));
    std::wostringstream text;
    text << static_cast<int>(m_model.SortColumn()) << L' ' << m_model.IsDescending();
    for (int i = 0; i < static_cast<int>(kColumnCount); ++i) {
        text << L' ' << MulDiv(ListView_GetColumnWidth(m_handle, i), USER_DEFAULT_SCREEN_DPI, dpi);
    }
    return text.str();
}

void FolderList::SetArrangement(const std::wstring& text) {
    std::wistringstream stream(text);
    unsigned column = 0;
    bool isDescending = false;
    if (stream >> column >> isDescending && column < kColumnCount) {
        Sort(static_cast<Column>(column), isDescending);
    }
    constexpr int kWidest = 4000;
    int width = 0;
    for (int i = 0; i < static_cast<int>(kColumnCount) && stream >> width; ++i) {
        ListView_SetColumnWidth(m_handle, i, Scaled(m_handle, std::clamp(width, 0, kWidest)));
    }
}

void FolderList::Rescale(int newDpi, int oldDpi) {
    for (int i = 0; i < static_cast<int>(kColumnCount); ++i) {
        ListView_SetColumnWidth(m_handle, i,
                                MulDiv(ListView_GetColumnWidth(m_handle, i), newDpi, oldDpi));
    }
    ListView_SetImageList(m_handle, SmallIcons(m_handle), LVSIL_SMALL);
}

} // namespace brevint::explorer
