#pragma once

#include "explorer/system/Handles.h"

#include <string>

namespace brevint::explorer {

/// A window of a class of its own. It goes with its object, and may go before.
class Window {
public:
    virtual ~Window();
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;

    /// Null when the window is gone.
    HWND Handle() const { return m_handle; }

protected:
    struct Plan {
        const wchar_t* className;
        HWND parent = nullptr;
        std::wstring title = {};
        DWORD style = 0;
        DWORD exStyle = 0;
        UINT id = 0; ///< Of a child.
        HICON icon = nullptr;
        HBRUSH background = nullptr;
    };

    Window() = default;

    /// Throws std::system_error where Windows makes no window.
    void Create(const Plan& plan);
    void Destroy();

    /// Throws nothing: whatever can go wrong with a message is dealt with where it goes wrong.
    virtual LRESULT OnMessage(UINT message, WPARAM wide, LPARAM longer);

private:
    static LRESULT CALLBACK Procedure(HWND handle, UINT message, WPARAM wide,
                                      LPARAM longer) noexcept;

    HWND m_handle = nullptr;
};

} // namespace brevint::explorer
