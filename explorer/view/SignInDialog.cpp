#include "explorer/view/SignInDialog.h"

#include "explorer/model/ErrorText.h"
#include "explorer/resources/Resource.h"
#include "explorer/system/Text.h"
#include "explorer/view/Controls.h"

#include <utility>

namespace brevint::explorer {

std::string CompleteUrl(std::string text) {
    const std::size_t begin = text.find_first_not_of(" \t");
    if (begin == std::string::npos) {
        return {};
    }
    text = text.substr(begin, text.find_last_not_of(" \t") + 1 - begin);
    return text.find("://") == std::string::npos ? "https://" + text : text;
}

SignInDialog::SignInDialog(Entries entries, std::wstring why, Listener listener)
    : Dialog(IDD_SIGN_IN), m_entries(std::move(entries)), m_why(std::move(why)),
      m_listener(std::move(listener)) {}

void SignInDialog::OnOpen() {
    SetWindowTextW(Control(IDC_URL), Wide(m_entries.url).c_str());
    SetWindowTextW(Control(IDC_USER), Wide(m_entries.user).c_str());
    SetWindowTextW(Control(IDC_STATE), m_why.c_str());
    CheckDlgButton(Handle(), IDC_STAY, m_entries.staysSignedIn ? BST_CHECKED : BST_UNCHECKED);
    SetFocus(Control(m_entries.url.empty()    ? IDC_URL
                     : m_entries.user.empty() ? IDC_USER
                                              : IDC_PASSWORD));
}

void SignInDialog::OnCommand(UINT id, UINT) {
    switch (id) {
    case IDOK: SignIn(); break;
    case IDCANCEL: Refuse(); break;
    case IDC_DETAILS:
        SetWindowTextW(Control(IDC_STATE), m_details.c_str());
        ShowWindow(Control(IDC_DETAILS), SW_HIDE);
        SetFocus(Control(IDC_PASSWORD));
        break;
    default: break;
    }
}

void SignInDialog::SignIn() {
    if (m_isBusy) {
        return;
    }
    std::wstring password = GetText(Control(IDC_PASSWORD));
    Entries entries = {.url = CompleteUrl(Utf8(GetText(Control(IDC_URL)))),
                       .user = Utf8(GetText(Control(IDC_USER))),
                       .password = Utf8(password),
                       .staysSignedIn = IsDlgButtonChecked(Handle(), IDC_STAY) == BST_CHECKED};
    SecureZeroMemory(password.data(), password.size() * sizeof(wchar_t));
    if (entries.url.empty() || entries.user.empty()) {
        SetWindowTextW(Control(IDC_STATE), Text(IDS_NEED_ADDRESS_AND_USER).c_str());
        SetFocus(Control(entries.url.empty() ? IDC_URL : IDC_USER));
        return;
    }
    SetWindowTextW(Control(IDC_URL), Wide(entries.url).c_str());
    SetBusy(true);
    m_listener.onSignIn(entries);
    SecureZeroMemory(entries.password.data(), entries.password.size());
}

void SignInDialog::SetBusy(bool isBusy) {
    m_isBusy = isBusy;
    for (const UINT id : {IDC_URL, IDC_USER, IDC_PASSWORD, IDC_STAY, IDOK}) {
        EnableWindow(Control(static_cast<UINT>(id)), isBusy ? FALSE : TRUE);
    }
    ShowWindow(Control(IDC_PROGRESS), isBusy ? SW_SHOW : SW_HIDE);
    Send(Control(IDC_PROGRESS), PBM_SETMARQUEE, isBusy ? TRUE : FALSE);
    if (isBusy) {
        ShowWindow(Control(IDC_DETAILS), SW_HIDE);
        SetWindowTextW(Control(IDC_STATE), Text(IDS_SIGNING_IN).c_str());
        SetFocus(Control(IDCANCEL));
    }
}

void SignInDialog::Fail(const Error& error) {
    SetBusy(false);
    SetWindowTextW(Control(IDC_STATE), ErrorText(error).c_str());
    m_details = ErrorDetails(error);
    ShowWindow(Control(IDC_DETAILS), SW_SHOW);
    const bool isAboutAddress = error.failure == Failure::Invalid ||
                                error.failure == Failure::NoConnection ||
                                error.failure == Failure::NotTheService;
    const HWND first = Control(isAboutAddress ? IDC_URL : IDC_PASSWORD);
    SetFocus(first);
    Send(first, EM_SETSEL, 0, -1);
}

void SignInDialog::Refuse() {
    if (m_isBusy) {
        m_listener.onStop();
    } else {
        Close();
        m_listener.onRefused();
    }
}

} // namespace brevint::explorer
