#include "explorer/view/MainWindow.h"

#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>

namespace brevint::explorer {
namespace {

/// COM, for as long as the program runs.
struct Com {
    Com() : result(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED | COINIT_DISABLE_OLE1DDE)) {}
    Com(const Com&) = delete;
    Com& operator=(const Com&) = delete;
    ~Com() {
        if (SUCCEEDED(result)) {
            CoUninitialize();
        }
    }
    const HRESULT result;
};

/// What "--profile NAME" says: settings and session of that name are kept apart from all others.
std::wstring Profile() {
    int count = 0;
    PWSTR* const arguments = CommandLineToArgvW(GetCommandLineW(), &count);
    const LocalPtr owner(static_cast<void*>(arguments));
    const std::wstring name =
        arguments && count == 3 && arguments[1] == std::wstring_view(L"--profile") ? arguments[2]
                                                                                   : L"";
    return name.find_first_of(L"\\/:.") == std::wstring::npos ? name : std::wstring();
}

} // namespace
} // namespace brevint::explorer

// NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name): Windows has its own names
int WINAPI wWinMain(HINSTANCE, HINSTANCE, PWSTR, int showCommand) {
    using namespace brevint::explorer;
    const Com com;
    const INITCOMMONCONTROLSEX controls = {sizeof controls,
                                           ICC_WIN95_CLASSES | ICC_STANDARD_CLASSES};
    InitCommonControlsEx(&controls);
    const Dispatcher dispatcher;
    SystemDesktop desktop;
    const std::wstring profile = Profile();
    MainWindow window(
        {.dispatcher = dispatcher,
         .desktop = desktop,
         .settings = Settings(Settings::kKey + (profile.empty() ? L"" : L"\\" + profile)),
         .store = SessionStore::OfUser(profile),
         .onClosed = [] {
             PostQuitMessage(EXIT_SUCCESS);
         }});
    window.Start(showCommand);
    MSG message = {};
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        if (!window.Translate(message)) {
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
    }
    return EXIT_SUCCESS;
}
