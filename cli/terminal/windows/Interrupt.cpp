#include "cli/terminal/Interrupt.h"

#include <system_error>

#include <windows.h>

namespace brevint::cli {

namespace {

int nesting = 0;

/// Stays set once a request has come.
HANDLE requested = nullptr;

BOOL WINAPI NoteRequest(DWORD kind) {
    if (kind != CTRL_C_EVENT && kind != CTRL_BREAK_EVENT) {
        return FALSE;
    }
    SetEvent(requested);
    return TRUE;
}

} // namespace

Interrupt::Interrupt() {
    if (nesting++ > 0) {
        return;
    }
    // Kept for the life of the process: the handler may run on its own thread at any time.
    if (!requested) {
        requested = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    }
    if (!requested || !SetConsoleCtrlHandler(NoteRequest, TRUE)) {
        throw std::system_error(static_cast<int>(GetLastError()), std::system_category());
    }
}

Interrupt::~Interrupt() {
    if (--nesting == 0) {
        SetConsoleCtrlHandler(NoteRequest, FALSE);
    }
}

bool Interrupt::Wait(std::chrono::milliseconds time) {
    return WaitForSingleObject(requested, static_cast<DWORD>(time.count())) == WAIT_OBJECT_0;
}

} // namespace brevint::cli
