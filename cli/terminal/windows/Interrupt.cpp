#include "cli/terminal/Interrupt.h"

#include <mutex>
#include <system_error>

#include <windows.h>

namespace brevint::cli {

namespace {

// The handler runs on a thread of the system, at any time.
std::mutex mutex;
StopSource* watching = nullptr;

BOOL WINAPI NoteRequest(DWORD kind) {
    if (kind != CTRL_C_EVENT && kind != CTRL_BREAK_EVENT) {
        return FALSE;
    }
    const std::scoped_lock lock(mutex);
    return watching && watching->request_stop() ? TRUE : FALSE;
}

} // namespace

/// The handler, and what it stops.
struct Interrupt::Watch {
    explicit Watch(StopSource& source) {
        const std::scoped_lock lock(mutex);
        watching = &source;
        if (!SetConsoleCtrlHandler(NoteRequest, TRUE)) {
            throw std::system_error(static_cast<int>(GetLastError()), std::system_category());
        }
    }
    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;
    ~Watch() {
        SetConsoleCtrlHandler(NoteRequest, FALSE);
        const std::scoped_lock lock(mutex);
        watching = nullptr;
    }
};

Interrupt::Interrupt() : m_watch(std::make_unique<Watch>(m_source)) {}

Interrupt::~Interrupt() = default;

} // namespace brevint::cli
