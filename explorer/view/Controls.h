#pragma once

#include "explorer/system/Handles.h"

#include <string>

namespace brevint::explorer {

// What windows do with the controls in them.

struct ControlPlan {
    const wchar_t* className;
    UINT id;
    DWORD style = 0;
    DWORD exStyle = 0;
    std::wstring name = {}; ///< Its text; for screen readers where it does not show.
};

/// Makes a visible child. Throws std::system_error where Windows makes no window.
HWND CreateControl(HWND parent, const ControlPlan& plan);

std::wstring GetText(HWND window);
void SetText(HWND window, const std::wstring& text); ///< Unless it is the same already.

/// How high a control's text is in lines of that width.
int TextHeight(HWND control, int width);

/// SendMessage with whatever a message's parameters are.
template <class Wide = WPARAM, class Long = LPARAM>
LRESULT Send(HWND window, UINT message, Wide wide = {}, Long longer = {}) {
    const auto number = [](auto value) {
        if constexpr (std::is_pointer_v<decltype(value)>) {
            return reinterpret_cast<LONG_PTR>(value);
        } else {
            return static_cast<LONG_PTR>(value);
        }
    };
    return SendMessageW(window, message, static_cast<WPARAM>(number(wide)), number(longer));
}

/// A length on a screen of 96 dots per inch, on the window's screen.
int Scaled(HWND window, int length);

/// The font of messages, as large as the screen wants it.
FontPtr MessageFont(UINT dpi);
void SetFontOfAll(HWND window, HFONT font);

inline bool IsShown(HWND window) {
    return (GetWindowLongW(window, GWL_STYLE) & WS_VISIBLE) != 0;
}

} // namespace brevint::explorer
