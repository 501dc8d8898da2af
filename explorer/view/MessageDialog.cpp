#include "explorer/view/MessageDialog.h"

#include "explorer/resources/Resource.h"
#include "explorer/view/Controls.h"

#include <algorithm>
#include <utility>

namespace brevint::explorer {

namespace {

constexpr std::size_t kMostChoices = 3;

RECT PlaceOf(HWND dialog, HWND control) {
    RECT place = {};
    GetWindowRect(control, &place);
    MapWindowPoints(nullptr, dialog, reinterpret_cast<POINT*>(&place), 2);
    return place;
}

void MoveDown(HWND dialog, HWND control, int distance) {
    const RECT place = PlaceOf(dialog, control);
    SetWindowPos(control, nullptr, place.left, place.top + distance, 0, 0,
                 SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

} // namespace

MessageDialog::MessageDialog(Message message)
    : Dialog(IDD_MESSAGE), m_message(std::move(message)) {}

void MessageDialog::OnOpen() {
    SetWindowTextW(Handle(), m_message.title.c_str());
    Send(Control(IDC_MESSAGE_ICON), STM_SETICON, LoadIconW(nullptr, m_message.icon));
    SetWindowTextW(Control(IDC_STATE), m_message.text.c_str());
    SetWindowTextW(Control(IDC_DETAILS_TEXT), m_message.details.c_str());
    ShowWindow(Control(IDC_DETAILS), m_message.details.empty() ? SW_HIDE : SW_SHOW);
    // The buttons that are used are those on the right.
    const std::size_t unused = kMostChoices - m_message.choices.size();
    for (std::size_t i = 0; i < kMostChoices; ++i) {
        const HWND button = Control(IDC_FIRST_CHOICE + static_cast<UINT>(i));
        if (i < unused) {
            DestroyWindow(button);
        } else {
            SetWindowTextW(button, m_message.choices[i - unused].label.c_str());
        }
    }
    const UINT first = IDC_FIRST_CHOICE + static_cast<UINT>(unused + m_message.defaultChoice);
    Send(Handle(), DM_SETDEFID, first);
    Arrange();
    SetFocus(Control(first));
}

void MessageDialog::Arrange() {
    const HWND text = Control(IDC_STATE);
    const RECT place = PlaceOf(Handle(), text);
    const int width = place.right - place.left;
    const int height = std::max<int>(place.bottom - place.top, TextHeight(text, width));
    const int more = height - (place.bottom - place.top);
    SetWindowPos(text, nullptr, 0, 0, width, height, SWP_NOMOVE | SWP_NOZORDER);
    for (HWND control = GetWindow(Handle(), GW_CHILD); control;
         control = GetWindow(control, GW_HWNDNEXT)) {
        if (PlaceOf(Handle(), control).top >= place.bottom) {
            MoveDown(Handle(), control, more);
        }
    }
    RECT window = {};
    GetWindowRect(Handle(), &window);
    SetWindowPos(Handle(), nullptr, 0, 0, window.right - window.left,
                 window.bottom - window.top + more, SWP_NOMOVE | SWP_NOZORDER);
}

void MessageDialog::OnCommand(UINT id, UINT) {
    const std::size_t unused = kMostChoices - m_message.choices.size();
    if (id == IDCANCEL) {
        Refuse();
    } else if (id == IDC_DETAILS) {
        EnableWindow(Control(IDC_DETAILS), FALSE);
        const HWND details = Control(IDC_DETAILS_TEXT);
        const RECT place = PlaceOf(Handle(), details);
        const int height = place.bottom - place.top + Scaled(Handle(), 8);
        for (UINT button = IDC_DETAILS; button < IDC_FIRST_CHOICE + kMostChoices; ++button) {
            if (button != IDC_DETAILS_TEXT && Control(button)) {
                MoveDown(Handle(), Control(button), height);
            }
        }
        RECT window = {};
        GetWindowRect(Handle(), &window);
        SetWindowPos(Handle(), nullptr, 0, 0, window.right - window.left,
                     window.bottom - window.top + height, SWP_NOMOVE | SWP_NOZORDER);
        ShowWindow(details, SW_SHOW);
        SetFocus(details);
    } else if (id >= IDC_FIRST_CHOICE + unused && id < IDC_FIRST_CHOICE + kMostChoices) {
        Choose(id - IDC_FIRST_CHOICE - unused);
    }
}

void MessageDialog::Choose(std::size_t index) {
    const std::function<void()> action = m_message.choices[index].action;
    Close();
    if (action) {
        action();
    }
}

} // namespace brevint::explorer
