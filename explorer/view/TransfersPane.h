#pragma once

#include "explorer/model/TransfersModel.h"
#include "explorer/system/Window.h"

#include <functional>
#include <memory>
#include <vector>

namespace brevint::explorer {

/// Shows the transfers, and takes orders for those that are selected.
class TransfersPane : public Window {
public:
    /// `onChange` is told when other orders than before make sense.
    TransfersPane(HWND parent, TransfersModel& model, std::function<void()> onChange);

    HWND List() const { return m_list; }
    void Rescale(int newDpi, int oldDpi);

    /// Shows what has changed in the model; nothing: the number of the transfers.
    void Update(std::optional<std::size_t> index);

    bool CanCancel() const { return HasSelected(TransfersModel::CanCancel); }
    bool CanRetry() const { return HasSelected(TransfersModel::CanRetry); }
    /// The one transfer that is selected and has failed; null: there is none.
    const TransfersModel::Row* SelectedFailure() const;
    bool CanClear() const { return m_model.ActiveCount() < m_model.Count(); }
    void CancelSelected();
    void RetrySelected(const std::shared_ptr<Client>& client);
    /// Forgets what has ended.
    void ClearEnded();

private:
    LRESULT OnMessage(UINT message, WPARAM wide, LPARAM longer) override;
    LRESULT OnNotify(NMHDR& header);
    LRESULT OnDraw(const NMLVCUSTOMDRAW& draw);
    std::wstring CellText(std::size_t row, int column) const;
    void DrawBar(HDC context, int row) const;
    void Arrange();
    std::vector<std::size_t> Selected() const;
    bool HasSelected(bool (*fits)(const TransfersModel::Row&)) const;

    TransfersModel& m_model;
    const std::function<void()> m_onChange;
    HWND m_list = nullptr;
};

} // namespace brevint::explorer
