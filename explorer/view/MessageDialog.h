#pragma once

#include "explorer/view/Dialog.h"

#include <functional>
#include <string>
#include <vector>

namespace brevint::explorer {

/// Tells the user something, or asks: up to three buttons, and details for those who want them.
class MessageDialog : public Dialog {
public:
    struct Choice {
        std::wstring label;
        std::function<void()> action = {};
    };
    struct Message {
        PCWSTR icon = nullptr; ///< One of Windows' own, IDI_WARNING for example.
        std::wstring title;
        std::wstring text;
        std::wstring details = {};
        std::vector<Choice> choices;   ///< The last one is for Esc.
        std::size_t defaultChoice = 0; ///< The one for Enter.
    };

    explicit MessageDialog(Message message);

    void Refuse() override { Choose(m_message.choices.size() - 1); }

private:
    void OnOpen() override;
    void OnCommand(UINT id, UINT notification) override;

    void Arrange();
    void Choose(std::size_t index);

    const Message m_message;
};

} // namespace brevint::explorer
