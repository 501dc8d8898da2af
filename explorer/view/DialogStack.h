#pragma once

#include "brevint/client.h"
#include "explorer/view/Dialog.h"
#include "explorer/view/MessageDialog.h"

#include <memory>
#include <string>
#include <vector>

namespace brevint::explorer {

/// The dialogs that are open, each over the one before it. Only the last one can be used. Any of
/// them may close first, since all belong to the same window.
class DialogStack {
public:
    /// What has closed is destroyed by the executor.
    explicit DialogStack(Executor executor) : m_executor(std::move(executor)) {}
    DialogStack(const DialogStack&) = delete;
    DialogStack& operator=(const DialogStack&) = delete;

    /// The window that the dialogs belong to. After its end no dialog is shown any more.
    void SetOwner(HWND owner) { m_owner = owner; }

    void Show(std::unique_ptr<Dialog> dialog);
    void ShowMessage(MessageDialog::Message message);
    /// Tells of a failure, in words and with details.
    void ShowError(const Error& error);
    void CloseAll();

    /// The dialog that the user sees; null: none.
    Dialog* Top() const;

private:
    void OnClosing(const std::shared_ptr<Dialog>& dialog);
    /// The window that the user can use.
    HWND TopWindow() const;

    const Executor m_executor;
    HWND m_owner = nullptr;
    std::vector<std::shared_ptr<Dialog>> m_dialogs;
};

} // namespace brevint::explorer
