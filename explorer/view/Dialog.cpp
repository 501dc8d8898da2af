#include "explorer/view/Dialog.h"

#include <system_error>
#include <utility>

namespace brevint::explorer {

Dialog::~Dialog() {
    Leave();
}

void Dialog::Open(HWND owner, std::function<void()> onClosing) {
    m_onClosing = std::move(onClosing);
    if (!CreateDialogParamW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(m_templateId), owner,
                            Procedure, reinterpret_cast<LPARAM>(this))) {
        throw std::system_error(static_cast<int>(GetLastError()), std::system_category());
    }
    OnOpen();
    ShowWindow(m_handle, SW_SHOW);
}

void Dialog::Close() {
    if (m_onClosing) {
        std::exchange(m_onClosing, {})();
    }
    Leave();
}

void Dialog::Leave() {
    if (m_handle) {
        SetWindowLongPtrW(m_handle, GWLP_USERDATA, 0);
        DestroyWindow(std::exchange(m_handle, nullptr));
    }
}

INT_PTR CALLBACK Dialog::Procedure(HWND handle, UINT message, WPARAM wide, LPARAM longer) noexcept {
    if (message == WM_INITDIALOG) {
        SetWindowLongPtrW(handle, GWLP_USERDATA, longer);
        reinterpret_cast<Dialog*>(longer)->m_handle = handle;
        return TRUE;
    }
    auto* const dialog = reinterpret_cast<Dialog*>(GetWindowLongPtrW(handle, GWLP_USERDATA));
    if (!dialog) {
        return FALSE;
    }
    if (message == WM_COMMAND) {
        dialog->OnCommand(LOWORD(wide), HIWORD(wide));
        return TRUE;
    }
    if (message == WM_CLOSE) {
        dialog->Refuse();
        return TRUE;
    }
    return FALSE;
}

} // namespace brevint::explorer
