#include "explorer/view/Notice.h"

#include "explorer/resources/Resource.h"
#include "explorer/system/Text.h"
#include "explorer/view/Controls.h"

#include <utility>

namespace brevint::explorer {

Notice::Notice(HWND parent) {
    Create({.className = L"BrevintNotice",
            .parent = parent,
            .style = WS_CHILD | WS_CLIPCHILDREN,
            .exStyle = WS_EX_CONTROLPARENT | WS_EX_CLIENTEDGE,
            .id = IDC_NOTICE,
            .background = GetSysColorBrush(COLOR_WINDOW)});
    m_text = CreateControl(Handle(),
                           {.className = WC_STATICW, .id = IDC_NOTICE_TEXT, .style = SS_NOPREFIX});
    m_action = CreateControl(
        Handle(), {.className = WC_BUTTONW, .id = IDC_NOTICE_ACTION, .style = WS_TABSTOP});
    m_details = CreateControl(Handle(), {.className = WC_BUTTONW,
                                         .id = IDC_NOTICE_DETAILS,
                                         .style = WS_TABSTOP,
                                         .name = Text(IDS_SHOW_DETAILS)});
}

void Notice::Show(Content content) {
    m_content = std::move(content);
    SetText(m_text, m_content.text);
    SetText(m_action, m_content.actionLabel);
    ShowWindow(m_action, m_content.actionLabel.empty() ? SW_HIDE : SW_SHOW);
    ShowWindow(m_details, m_content.details.empty() ? SW_HIDE : SW_SHOW);
    Arrange();
    ShowWindow(Handle(), SW_SHOW);
}

void Notice::Hide() {
    m_content = {};
    ShowWindow(Handle(), SW_HIDE);
}

void Notice::Focus() {
    SetFocus(IsShown(m_action) ? m_action : Handle());
}

LRESULT Notice::OnMessage(UINT message, WPARAM wide, LPARAM longer) {
    switch (message) {
    case WM_SIZE: Arrange(); return 0;
    case WM_CTLCOLORSTATIC: return reinterpret_cast<LRESULT>(GetSysColorBrush(COLOR_WINDOW));
    case WM_COMMAND:
        if (LOWORD(wide) == IDC_NOTICE_ACTION && m_content.action) {
            const auto action = m_content.action; // it may show another content
            action();
        } else if (LOWORD(wide) == IDC_NOTICE_DETAILS) {
            SetText(m_text, m_content.text + L"\r\n\r\n" + m_content.details);
            ShowWindow(m_details, SW_HIDE);
            Arrange();
        }
        return 0;
    default: return Window::OnMessage(message, wide, longer);
    }
}

void Notice::Arrange() {
    RECT client = {};
    GetClientRect(Handle(), &client);
    const int margin = Scaled(Handle(), 16);
    const int width = Scaled(Handle(), 110);
    const int height = Scaled(Handle(), 26);
    const int textWidth = std::max(0L, client.right - 2 * margin);
    const int textHeight = TextHeight(m_text, textWidth);
    MoveWindow(m_text, margin, margin, textWidth, textHeight, TRUE);
    const int top = 2 * margin + textHeight;
    MoveWindow(m_action, margin, top, width, height, TRUE);
    MoveWindow(m_details, margin + width + margin / 2, top, width, height, TRUE);
}

} // namespace brevint::explorer
