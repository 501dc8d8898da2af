#include "explorer/view/DialogStack.h"

#include "explorer/model/ErrorText.h"
#include "explorer/resources/Resource.h"
#include "explorer/system/Text.h"

#include <algorithm>
#include <utility>

namespace brevint::explorer {

void DialogStack::Show(std::unique_ptr<Dialog> dialog) {
    if (!IsWindow(m_owner)) {
        return;
    }
    const std::shared_ptr<Dialog> shown = std::move(dialog);
    shown->Open(m_owner, [this, weak = std::weak_ptr(shown)] { OnClosing(weak.lock()); });
    EnableWindow(TopWindow(), FALSE);
    m_dialogs.push_back(shown);
}

void DialogStack::OnClosing(const std::shared_ptr<Dialog>& dialog) {
    const bool isTop = dialog.get() == Top();
    std::erase(m_dialogs, dialog);
    if (isTop) {
        // Before the dialog goes, so that this window and no other program becomes active.
        EnableWindow(TopWindow(), TRUE);
        if (GetActiveWindow() == dialog->Handle()) {
            SetActiveWindow(TopWindow());
        }
    }
    m_executor([dialog] {}); // its function that is running now ends before that
}

void DialogStack::CloseAll() {
    const auto closed = std::exchange(m_dialogs, {});
    EnableWindow(m_owner, TRUE);
}

void DialogStack::ShowMessage(MessageDialog::Message message) {
    Show(std::make_unique<MessageDialog>(std::move(message)));
}

void DialogStack::ShowError(const Error& error) {
    ShowMessage({.icon = IDI_WARNING,
                 .title = Text(IDS_TITLE),
                 .text = ErrorText(error),
                 .details = ErrorDetails(error),
                 .choices = {{Text(IDS_OK)}}});
}

Dialog* DialogStack::Top() const {
    return m_dialogs.empty() ? nullptr : m_dialogs.back().get();
}

HWND DialogStack::TopWindow() const {
    return m_dialogs.empty() ? m_owner : m_dialogs.back()->Handle();
}

} // namespace brevint::explorer
