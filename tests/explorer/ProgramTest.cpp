#include "explorer/resources/Resource.h"
#include "explorer/system/Handles.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace brevint::test {
namespace {

constexpr DWORD kLongEnough = 60'000;

/// The program's sign-in dialog; null until it is there.
HWND FindDialog(DWORD process) {
    std::pair<DWORD, HWND> search(process, nullptr);
    EnumWindows(
        [](HWND window, LPARAM parameter) -> BOOL {
            auto& [wanted, found] = *reinterpret_cast<std::pair<DWORD, HWND>*>(parameter);
            DWORD owner = 0;
            GetWindowThreadProcessId(window, &owner);
            if (owner == wanted && GetDlgItem(window, IDC_PASSWORD)) {
                found = window;
            }
            return TRUE;
        },
        reinterpret_cast<LPARAM>(&search));
    return search.second;
}

/// Serves this thread's messages until the process has opened its dialog, of which the system tells
/// by a message. Null: it does not, or has ended.
HWND AwaitDialog(HANDLE process, DWORD id) {
    const auto onShown = [](HWINEVENTHOOK, DWORD, HWND, LONG, LONG, DWORD, DWORD) {
    };
    const HWINEVENTHOOK hook =
        SetWinEventHook(EVENT_MIN, EVENT_MAX, nullptr, onShown, id, 0, WINEVENT_OUTOFCONTEXT);
    HWND dialog = FindDialog(id);
    while (!dialog && MsgWaitForMultipleObjectsEx(1, &process, kLongEnough, QS_ALLINPUT,
                                                  MWMO_INPUTAVAILABLE) == WAIT_OBJECT_0 + 1) {
        MSG message = {};
        PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE);
        dialog = FindDialog(id);
    }
    UnhookWinEvent(hook);
    return dialog;
}

TEST(ProgramTest, StartsAsksToSignInAndEnds) {
    // A profile of its own, so that what the user has chosen stays out of it.
    const std::wstring profile = L"Test " + std::to_wstring(GetCurrentProcessId());
    std::wstring command = L"brevint-explorer.exe --profile \"" + profile + L'"';
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION made = {};
    ASSERT_TRUE(CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr,
                               nullptr, &startup, &made));
    const HandlePtr process(made.hProcess);
    const HandlePtr thread(made.hThread);
    const HWND dialog = AwaitDialog(process.get(), made.dwProcessId);
    EXPECT_TRUE(dialog);
    PostMessageW(GetWindow(dialog, GW_OWNER), WM_CLOSE, 0, 0);
    if (WaitForSingleObject(process.get(), kLongEnough) != WAIT_OBJECT_0) {
        TerminateProcess(process.get(), 1);
        ADD_FAILURE() << "it does not end";
    }
    DWORD status = 1;
    GetExitCodeProcess(process.get(), &status);
    EXPECT_EQ(status, 0U);
    EXPECT_EQ(
        RegDeleteTreeW(HKEY_CURRENT_USER, (L"Software\\Brevint\\Explorer\\" + profile).c_str()),
        ERROR_SUCCESS)
        << "it has remembered its place";
}

} // namespace
} // namespace brevint::test
