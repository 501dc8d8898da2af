#pragma once

#include <version>

// The standard library's tokens, where it has reliable ones. libc++ has none before version 20.
// Where libstdc++ has no futex, as on Windows, a std::stop_callback that goes while another thread
// calls it may wait for ever. The classes for these can do what calls and most applications need.
#if defined(__cpp_lib_jthread) && (!defined(__GLIBCXX__) || defined(_GLIBCXX_HAVE_LINUX_FUTEX))
#define BREVINT_HAS_STD_STOP_TOKEN 1
#else
#define BREVINT_HAS_STD_STOP_TOKEN 0
#endif

#if BREVINT_HAS_STD_STOP_TOKEN
#include <stop_token>
#else
#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>
#endif

namespace brevint {

#if BREVINT_HAS_STD_STOP_TOKEN

/// Stops calls: a token from whoever may stop them.
using StopToken = std::stop_token;
/// Makes tokens and stops what has them.
using StopSource = std::stop_source;
/// Called when a token is stopped, for as long as it exists.
template <class Callback>
using StopCallback = std::stop_callback<Callback>;

#else

namespace detail {

class StopWatcher {
public:
    virtual void OnStop() noexcept = 0;

protected:
    ~StopWatcher() = default;
};

class StopState {
public:
    bool IsStopped() const noexcept {
        const std::lock_guard lock(m_mutex);
        return m_stopped;
    }

    bool Stop() noexcept {
        std::unique_lock lock(m_mutex);
        if (std::exchange(m_stopped, true)) {
            return false;
        }
        m_stopping = std::this_thread::get_id();
        while (!m_watchers.empty()) {
            m_running = m_watchers.back();
            m_watchers.pop_back();
            lock.unlock();
            m_running->OnStop(); // may destroy the watcher
            lock.lock();
            m_running = nullptr;
            m_changed.notify_all();
        }
        return true;
    }

    /// False: it has been stopped before.
    bool Add(StopWatcher& watcher) {
        const std::lock_guard lock(m_mutex);
        if (!m_stopped) {
            m_watchers.push_back(&watcher);
        }
        return !m_stopped;
    }

    /// Waits while the watcher is called on another thread.
    void Remove(StopWatcher& watcher) noexcept {
        std::unique_lock lock(m_mutex);
        std::erase(m_watchers, &watcher);
        if (m_stopping != std::this_thread::get_id()) {
            m_changed.wait(lock, [&] { return m_running != &watcher; });
        }
    }

private:
    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_stopped = false;
    std::thread::id m_stopping;
    StopWatcher* m_running = nullptr;
    std::vector<StopWatcher*> m_watchers;
};

} // namespace detail

/// As std::stop_token.
class StopToken {
public:
    StopToken() = default;

    [[nodiscard]] bool stop_requested() const noexcept { return m_state && m_state->IsStopped(); }
    [[nodiscard]] bool stop_possible() const noexcept { return m_state != nullptr; }

private:
    friend class StopSource;
    template <class Callback>
    friend class StopCallback;
    explicit StopToken(std::shared_ptr<detail::StopState> state) : m_state(std::move(state)) {}

    std::shared_ptr<detail::StopState> m_state;
};

/// As std::stop_source.
class StopSource {
public:
    [[nodiscard]] StopToken get_token() const noexcept { return StopToken(m_state); }
    [[nodiscard]] bool stop_requested() const noexcept { return m_state->IsStopped(); }
    bool request_stop() noexcept {
        const std::shared_ptr<detail::StopState> kept = m_state; // a callback may end the source
        return kept->Stop();
    }

private:
    std::shared_ptr<detail::StopState> m_state = std::make_shared<detail::StopState>();
};

/// As std::stop_callback.
template <class Callback>
class StopCallback final : detail::StopWatcher {
public:
    template <class Function>
    StopCallback(const StopToken& token, Function&& callback)
        : m_state(token.m_state), m_callback(std::forward<Function>(callback)) {
        if (m_state && !m_state->Add(*this)) {
            m_callback();
        }
    }
    StopCallback(const StopCallback&) = delete;
    StopCallback& operator=(const StopCallback&) = delete;
    ~StopCallback() {
        if (m_state) {
            m_state->Remove(*this);
        }
    }

private:
    void OnStop() noexcept override { m_callback(); }

    std::shared_ptr<detail::StopState> m_state;
    Callback m_callback;
};
template <class Callback>
StopCallback(StopToken, Callback) -> StopCallback<Callback>;

#endif

} // namespace brevint
