#include "explorer/system/Window.h"

#include <system_error>
#include <utility>

namespace brevint::explorer {

Window::~Window() {
    Destroy();
}

void Window::Create(const Plan& plan) {
    const HINSTANCE module = GetModuleHandleW(nullptr);
    WNDCLASSEXW type = {};
    type.cbSize = sizeof type;
    type.lpfnWndProc = Procedure;
    type.hInstance = module;
    type.hIcon = plan.icon;
    type.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    type.hbrBackground = plan.background;
    type.lpszClassName = plan.className;
    RegisterClassExW(&type); // fails where the class is known already
    const HMENU id = reinterpret_cast<HMENU>(static_cast<UINT_PTR>(plan.id));
    if (!CreateWindowExW(plan.exStyle, plan.className, plan.title.c_str(), plan.style,
                         CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, plan.parent,
                         id, module, this)) {
        throw std::system_error(static_cast<int>(GetLastError()), std::system_category());
    }
}

void Window::Destroy() {
    if (m_handle) {
        // What derives from this class may be gone already, so it gets no messages any more.
        SetWindowLongPtrW(m_handle, GWLP_USERDATA, 0);
        DestroyWindow(std::exchange(m_handle, nullptr));
    }
}

LRESULT Window::OnMessage(UINT message, WPARAM wide, LPARAM longer) {
    return DefWindowProcW(m_handle, message, wide, longer);
}

LRESULT CALLBACK Window::Procedure(HWND handle, UINT message, WPARAM wide, LPARAM longer) noexcept {
    if (message == WM_NCCREATE) {
        auto* const created =
            static_cast<Window*>(reinterpret_cast<CREATESTRUCTW*>(longer)->lpCreateParams);
        created->m_handle = handle;
        SetWindowLongPtrW(handle, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(created));
    }
    auto* const window = reinterpret_cast<Window*>(GetWindowLongPtrW(handle, GWLP_USERDATA));
    if (!window) {
        return DefWindowProcW(handle, message, wide, longer);
    }
    const LRESULT result = window->OnMessage(message, wide, longer);
    // The message may have destroyed the object.
    if (message == WM_NCDESTROY &&
        reinterpret_cast<Window*>(GetWindowLongPtrW(handle, GWLP_USERDATA)) == window) {
        window->m_handle = nullptr;
    }
    return result;
}

} // namespace brevint::explorer
