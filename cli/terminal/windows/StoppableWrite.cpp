#include "cli/terminal/windows/StoppableWrite.h"

#include <algorithm>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>

namespace brevint::cli {

namespace {

using namespace std::chrono_literals;

/// While it lives, what its thread is writing is broken off some time after the token is stopped.
class WriteLimit {
public:
    WriteLimit(const StopToken& stop, std::chrono::milliseconds patience)
        : m_patience(patience), m_writer(ThisThread(), &CloseHandle) {
        m_onStop.emplace(stop, Watch{this});
    }
    WriteLimit(const WriteLimit&) = delete;
    WriteLimit& operator=(const WriteLimit&) = delete;
    ~WriteLimit() {
        m_onStop.reset(); // from here on none begins to watch
        {
            const std::scoped_lock lock(m_mutex);
            m_hasEnded = true;
        }
        m_changed.notify_all();
        if (m_watcher.joinable()) {
            m_watcher.join();
        }
    }

    bool IsOver() {
        const std::scoped_lock lock(m_mutex);
        return m_isOver;
    }

private:
    struct Watch {
        WriteLimit* limit;
        void operator()() const {
            limit->m_watcher = std::thread([limit = limit] { limit->Run(); });
        }
    };

    static HANDLE ThisThread() {
        HANDLE thread = nullptr;
        DuplicateHandle(GetCurrentProcess(), GetCurrentThread(), GetCurrentProcess(), &thread, 0,
                        FALSE, DUPLICATE_SAME_ACCESS);
        return thread;
    }

    void Run() {
        std::unique_lock lock(m_mutex);
        m_changed.wait_for(lock, m_patience, [this] { return m_hasEnded; });
        m_isOver = !m_hasEnded;
        // Once more and again, because the write may not have begun when it is broken off.
        while (!m_hasEnded) {
            CancelSynchronousIo(m_writer.get());
            m_changed.wait_for(lock, 20ms, [this] { return m_hasEnded; });
        }
    }

    const std::chrono::milliseconds m_patience;
    const std::unique_ptr<void, decltype(&CloseHandle)> m_writer;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_hasEnded = false;
    bool m_isOver = false;
    std::thread m_watcher;
    std::optional<StopCallback<Watch>> m_onStop;
};

} // namespace

std::error_code WriteAll(HANDLE target, std::string_view bytes, const StopToken& stop,
                         std::chrono::milliseconds patience) {
    WriteLimit limit(stop, patience);
    while (!bytes.empty()) {
        constexpr std::size_t kBlock = 64 * 1024;
        DWORD written = 0;
        const bool isDone =
            WriteFile(target, bytes.data(), static_cast<DWORD>(std::min(bytes.size(), kBlock)),
                      &written, nullptr) != FALSE;
        const auto reason = static_cast<int>(GetLastError());
        if (limit.IsOver()) {
            return std::make_error_code(std::errc::operation_canceled);
        }
        if (!isDone) {
            return {reason, std::system_category()};
        }
        bytes.remove_prefix(written);
    }
    return {};
}

} // namespace brevint::cli
