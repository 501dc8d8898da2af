#include "explorer/view/NameDialog.h"

#include "explorer/resources/Resource.h"
#include "explorer/view/Controls.h"

#include <utility>

namespace brevint::explorer {

NameDialog::NameDialog(std::wstring title, std::wstring prompt,
                       std::function<void(const std::wstring&)> onName)
    : Dialog(IDD_NAME), m_title(std::move(title)), m_prompt(std::move(prompt)),
      m_onName(std::move(onName)) {}

void NameDialog::OnOpen() {
    SetWindowTextW(Handle(), m_title.c_str());
    SetWindowTextW(Control(IDC_PROMPT), m_prompt.c_str());
    EnableWindow(Control(IDOK), FALSE);
    SetFocus(Control(IDC_NAME));
}

std::wstring NameDialog::Name() const {
    const std::wstring text = GetText(Control(IDC_NAME));
    const std::size_t begin = text.find_first_not_of(L' ');
    return begin == std::wstring::npos
               ? std::wstring()
               : text.substr(begin, text.find_last_not_of(L' ') + 1 - begin);
}

void NameDialog::OnCommand(UINT id, UINT notification) {
    const std::wstring name = Name();
    if (id == IDC_NAME && notification == EN_CHANGE) {
        EnableWindow(Control(IDOK), name.empty() ? FALSE : TRUE);
    } else if (id == IDCANCEL) {
        Close();
    } else if (id == IDOK && !name.empty()) {
        Close();
        m_onName(name);
    }
}

} // namespace brevint::explorer
