#include "explorer/view/DialogStack.h"

#include "explorer/model/ErrorText.h"
#include "explorer/resources/Resource.h"
#include "explorer/system/Text.h"

#include <algorithm>
#include <utility>

namespace brevint::explorer {

void DialogStack::Show(std::unique_ptr<Dialog> dialog) {
    const Dialog* const below = Top();
    const std::shared_ptr<Dialog> shown = std::move(dialog);
    m_dialogs.push_back(shown);
    shown->Open(below ? below->Handle() : m_owner, [this, weak = std::weak_ptr(shown)] {
        const auto closed = weak.lock();
        std::erase(m_dialogs, closed);
        m_executor([closed] {}); // its function that is running now ends before that
    });
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

} // namespace brevint::explorer
