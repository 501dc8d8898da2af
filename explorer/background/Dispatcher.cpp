#include "explorer/background/Dispatcher.h"

#include <deque>
#include <mutex>
#include <utility>

namespace brevint::explorer {

/// A window that only gets messages. One message at most is on its way, so that the thread's
/// message queue never fills up, however fast others post.
class Dispatcher::Target : public Window {
public:
    Target() { Create({.className = L"BrevintDispatcher", .parent = HWND_MESSAGE}); }

    void Post(std::function<void()> function) {
        const std::lock_guard lock(m_mutex);
        if (m_isOpen) {
            m_functions.push_back(std::move(function));
            if (m_functions.size() == 1) {
                PostMessageW(Handle(), kRun, 0, 0);
            }
        }
    }

    void Close() {
        std::deque<std::function<void()>> dropped; // what they own goes without the lock
        const std::lock_guard lock(m_mutex);
        m_isOpen = false;
        dropped.swap(m_functions);
        Destroy();
    }

private:
    static constexpr UINT kRun = WM_APP;

    LRESULT OnMessage(UINT message, WPARAM wide, LPARAM longer) override {
        if (message != kRun) {
            return Window::OnMessage(message, wide, longer);
        }
        std::unique_lock lock(m_mutex);
        const std::function<void()> function = std::move(m_functions.front());
        m_functions.pop_front();
        if (!m_functions.empty()) {
            PostMessageW(Handle(), kRun, 0, 0);
        }
        lock.unlock();
        function();
        return 0;
    }

    std::mutex m_mutex; ///< Guards what follows.
    std::deque<std::function<void()>> m_functions;
    bool m_isOpen = true;
};

Dispatcher::Dispatcher() : m_target(std::make_shared<Target>()) {}

Dispatcher::~Dispatcher() {
    m_target->Close();
}

Executor Dispatcher::GetExecutor() const {
    return [target = m_target](std::function<void()> function) {
        target->Post(std::move(function));
    };
}

} // namespace brevint::explorer
