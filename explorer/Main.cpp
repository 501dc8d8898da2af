#include "explorer/view/MainWindow.h"

#include <cstdlib>

/// Common controls and COM, for as long as the program runs.
namespace {

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

} // namespace

int WINAPI wWinMain(HINSTANCE, HINSTANCE, PWSTR, int showCommand) {
    using namespace brevint::explorer;
    const Com com;
    const INITCOMMONCONTROLSEX controls = {sizeof controls,
                                           ICC_WIN95_CLASSES | ICC_STANDARD_CLASSES};
    InitCommonControlsEx(&controls);
    const Dispatcher dispatcher;
    SystemDesktop desktop;
    MainWindow window({.dispatcher = dispatcher,
                       .desktop = desktop,
                       .store = SessionStore::OfUser(),
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
