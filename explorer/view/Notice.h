#pragma once

#include "explorer/system/Window.h"

#include <functional>
#include <string>

namespace brevint::explorer {

/// Stands where the list would, and says why there is none: nothing is there, something is awaited,
/// or something went wrong.
class Notice : public Window {
public:
    explicit Notice(HWND parent);

    struct Content {
        std::wstring text;
        std::wstring actionLabel = {}; ///< Of a button; empty: there is none.
        std::function<void()> action = {};
        std::wstring details = {}; ///< Shown by another button; empty: there are none.
    };
    void Show(Content content);
    void Hide();

    /// Gives its button the focus.
    void Focus();

private:
    LRESULT OnMessage(UINT message, WPARAM wide, LPARAM longer) override;
    void Arrange();

    Content m_content;
    HWND m_text = nullptr;
    HWND m_action = nullptr;
    HWND m_details = nullptr;
};

} // namespace brevint::explorer
