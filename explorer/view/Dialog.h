#pragma once

#include "explorer/system/Handles.h"

#include <functional>

namespace brevint::explorer {

/// A dialog. The program's one message loop serves it too, so everything else goes on meanwhile.
/// DialogStack keeps what lies below it from being used.
class Dialog {
public:
    virtual ~Dialog();
    Dialog(const Dialog&) = delete;
    Dialog& operator=(const Dialog&) = delete;

    /// Shows it. `onClosing` is called when it closes itself, while its window is still there, and
    /// not when it is destroyed; it must not destroy the object. Throws std::system_error where
    /// Windows makes no dialog.
    void Open(HWND owner, std::function<void()> onClosing);

    /// Null unless it is open.
    HWND Handle() const { return m_handle; }

    /// What its closing means where the user does not choose: the dialog is refused.
    virtual void Refuse() { Close(); }

protected:
    explicit Dialog(UINT templateId) : m_templateId(templateId) {}

    virtual void OnOpen() = 0;
    virtual void OnCommand(UINT id, UINT notification) = 0;

    HWND Control(UINT id) const { return GetDlgItem(m_handle, static_cast<int>(id)); }
    void Close();

private:
    static INT_PTR CALLBACK Procedure(HWND handle, UINT message, WPARAM wide,
                                      LPARAM longer) noexcept;

    void Leave();

    const UINT m_templateId;
    HWND m_handle = nullptr;
    std::function<void()> m_onClosing;
};

} // namespace brevint::explorer
