#pragma once

#include "explorer/model/FolderModel.h"
#include "explorer/system/Handles.h"

#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace brevint::explorer {

/// How much is selected, and of what kind.
struct Selection {
    std::size_t count = 0;
    std::size_t files = 0;
    std::size_t lockedFiles = 0;
};

/// What a folder holds, in columns. It asks the model for the rows that it draws, and keeps none.
class FolderList {
public:
    struct Listener {
        std::function<void()> onSelection;
        std::function<void()> onOpen; ///< What is selected.
    };

    FolderList(HWND parent, Listener listener);
    FolderList(const FolderList&) = delete;
    FolderList& operator=(const FolderList&) = delete;

    HWND Handle() const { return m_handle; }
    LRESULT OnNotify(const NMHDR& header);

    const FolderModel& Model() const { return m_model; }
    /// Order and filter stay. What is selected stays so if it is in the new model too and
    /// `keepsSelection` says so.
    void Show(FolderModel model, bool keepsSelection);
    void Filter(const std::wstring& text);
    /// The other way round if that is the order already.
    void SortBy(Column column);

    Selection GetSelection() const;
    std::vector<Item> SelectedItems() const;
    void Select(std::string_view id);
    void SelectAll();

    /// The widths of the columns, and the order, as a text.
    std::wstring Arrangement() const;
    void SetArrangement(const std::wstring& text);
    /// The screen has another resolution than before.
    void Rescale(int newDpi, int oldDpi);

private:
    void OnDisplay(LVITEMW& item);
    void Sort(Column column, bool isDescending);
    void ShowSortColumn();
    /// Changes the model, and then shows it with the same items selected.
    void Change(const std::function<void()>& change, bool keepsSelection = true);
    /// Between these nothing is drawn, and the listener is told of nothing.
    void BeginChange();
    void EndChange();
    template <class Visitor>
    void VisitSelected(Visitor visit) const;

    const Listener m_listener;
    HWND m_handle;
    FolderModel m_model;
    std::wstring m_filter;
    std::map<std::wstring, int> m_icons;          ///< By endings.
    mutable std::optional<Selection> m_selection; ///< Unless it has changed since it was counted.
    bool m_isChanging = false;
};

} // namespace brevint::explorer
