#pragma once

#include "explorer/view/Dialog.h"

#include <functional>
#include <string>

namespace brevint::explorer {

/// Asks for a name. Only one that is not empty can be accepted.
class NameDialog : public Dialog {
public:
    NameDialog(std::wstring title, std::wstring prompt,
               std::function<void(const std::wstring&)> onName);

private:
    void OnOpen() override;
    void OnCommand(UINT id, UINT notification) override;

    std::wstring Name() const;

    const std::wstring m_title;
    const std::wstring m_prompt;
    const std::function<void(const std::wstring&)> m_onName;
};

} // namespace brevint::explorer
