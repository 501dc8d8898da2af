#include "explorer/view/Controls.h"

#include <system_error>

namespace brevint::explorer {

HWND CreateControl(HWND parent, const ControlPlan& plan) {
    const HMENU id = reinterpret_cast<HMENU>(static_cast<UINT_PTR>(plan.id));
    const HWND control = CreateWindowExW(plan.exStyle, plan.className, plan.name.c_str(),
                                         plan.style | WS_CHILD | WS_VISIBLE, 0, 0, 0, 0, parent, id,
                                         GetModuleHandleW(nullptr), nullptr);
    if (!control) {
        throw std::system_error(static_cast<int>(GetLastError()), std::system_category());
    }
    return control;
}

std::wstring GetText(HWND window) {
    std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(window)) + 1, L'\0');
    text.resize(static_cast<std::size_t>(
        GetWindowTextW(window, text.data(), static_cast<int>(text.size()))));
    return text;
}

void SetText(HWND window, const std::wstring& text) {
    if (GetText(window) != text) {
        SetWindowTextW(window, text.c_str());
    }
}

int TextHeight(HWND control, int width) {
    RECT needed = {0, 0, width, 0};
    const HDC screen = GetDC(control);
    const HGDIOBJ before = SelectObject(screen, reinterpret_cast<HFONT>(Send(control, WM_GETFONT)));
    DrawTextW(screen, GetText(control).c_str(), -1, &needed,
              DT_CALCRECT | DT_WORDBREAK | DT_NOPREFIX);
    SelectObject(screen, before);
    ReleaseDC(control, screen);
    return needed.bottom;
}

int Scaled(HWND window, int length) {
    return MulDiv(length, static_cast<int>(GetDpiForWindow(window)), USER_DEFAULT_SCREEN_DPI);
}

FontPtr MessageFont(UINT dpi) {
    NONCLIENTMETRICSW metrics = {};
    metrics.cbSize = sizeof metrics;
    SystemParametersInfoForDpi(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0, dpi);
    return FontPtr(CreateFontIndirectW(&metrics.lfMessageFont));
}

void SetFontOfAll(HWND window, HFONT font) {
    EnumChildWindows(
        window,
        [](HWND child, LPARAM wanted) -> BOOL {
            SendMessageW(child, WM_SETFONT, static_cast<WPARAM>(wanted), TRUE);
            return TRUE;
        },
        reinterpret_cast<LPARAM>(font));
}

} // namespace brevint::explorer
