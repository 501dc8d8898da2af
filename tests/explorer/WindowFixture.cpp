#include "tests/explorer/WindowFixture.h"

#include "explorer/system/Text.h"

#include <algorithm>
#include <chrono>
#include <fstream>
#include <iterator>

#include <shlobj.h>

namespace brevint::test {

namespace {

std::wstring TextOf(HWND window) {
    return window ? explorer::GetText(window) : std::wstring();
}

void AddKey(std::vector<INPUT>& inputs, WORD key, WORD character, DWORD flags) {
    INPUT input = {};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = key;
    input.ki.wScan = character;
    input.ki.dwFlags = flags;
    inputs.push_back(input);
}

} // namespace

void Key(WORD key, WORD modifier) {
    std::vector<INPUT> inputs;
    if (modifier != 0) {
        AddKey(inputs, modifier, 0, 0);
    }
    AddKey(inputs, key, 0, 0);
    AddKey(inputs, key, 0, KEYEVENTF_KEYUP);
    if (modifier != 0) {
        AddKey(inputs, modifier, 0, KEYEVENTF_KEYUP);
    }
    SendInput(static_cast<UINT>(inputs.size()), inputs.data(), sizeof(INPUT));
}

void TypeKeys(std::wstring_view text) {
    std::vector<INPUT> inputs;
    for (const wchar_t character : text) {
        AddKey(inputs, 0, character, KEYEVENTF_UNICODE);
        AddKey(inputs, 0, character, KEYEVENTF_UNICODE | KEYEVENTF_KEYUP);
    }
    SendInput(static_cast<UINT>(inputs.size()), inputs.data(), sizeof(INPUT));
}

WindowTest::WindowTest(service::ServiceOptions options) : m_service(std::move(options)) {
    m_service.Start();
    m_desktop.folder = m_folder.Folder();
    OpenWindow();
}

WindowTest::~WindowTest() {
    CloseWindow();
    RegDeleteTreeW(HKEY_CURRENT_USER, kSettings);
}

void WindowTest::OpenWindow() {
    m_window = std::make_unique<explorer::MainWindow>(explorer::MainWindow::Surroundings{
        .dispatcher = m_dispatcher,
        .desktop = m_desktop,
        .settings = explorer::Settings(kSettings),
        .store = explorer::SessionStore(m_folder.Folder() / L"Brevint" / L"Explorer"),
        .onClosed = [this] {
            m_isClosed = true;
        }});
    m_window->Start(SW_SHOWNORMAL);
}

void WindowTest::CloseWindow() {
    if (m_window && m_window->Handle()) {
        SendMessageW(Main(), WM_CLOSE, 0, 0);
        if (Main()) { // it asks whether transfers are to be cancelled
            PressChoice(1);
        }
    }
    m_window.reset();
}

bool WindowTest::PumpUntil(const std::function<bool()>& condition) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::minutes(1);
    for (;;) {
        MSG message = {};
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
            if (!m_window || !m_window->Handle() || !m_window->Translate(message)) {
                TranslateMessage(&message);
                DispatchMessageW(&message);
            }
            if (condition()) {
                return true;
            }
        }
        const auto left =
            std::chrono::ceil<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
        if (condition()) {
            return true;
        }
        if (left.count() <= 0 ||
            MsgWaitForMultipleObjectsEx(0, nullptr, static_cast<DWORD>(left.count()), QS_ALLINPUT,
                                        MWMO_INPUTAVAILABLE) == WAIT_TIMEOUT) {
            return false;
        }
    }
}

HWND WindowTest::Child(UINT id) const {
    return GetDlgItem(Main(), static_cast<int>(id));
}

HWND WindowTest::Dialog() const {
    const HWND popup = GetLastActivePopup(Main());
    return popup == Main() || !IsWindowVisible(popup) ? nullptr : popup;
}

std::wstring WindowTest::DialogText(UINT id) const {
    return TextOf(GetDlgItem(Dialog(), static_cast<int>(id)));
}

bool WindowTest::AwaitDialog(UINT control) {
    return PumpUntil([&] { return Dialog() && GetDlgItem(Dialog(), static_cast<int>(control)); });
}

bool WindowTest::AwaitNoDialog() {
    return PumpUntil([&] { return IsWindowEnabled(Main()) != FALSE; });
}

void WindowTest::Press(UINT id) {
    SendMessageW(GetDlgItem(Dialog(), static_cast<int>(id)), BM_CLICK, 0, 0);
}

void WindowTest::PressChoice(std::size_t fromTheRight) {
    Press(IDC_FIRST_CHOICE + 2 - static_cast<UINT>(fromTheRight));
}

void WindowTest::Type(UINT control, const std::wstring& text) {
    const HWND edit = Dialog() ? GetDlgItem(Dialog(), static_cast<int>(control)) : Child(control);
    SetFocus(edit);
    SetWindowTextW(edit, text.c_str());
}

bool WindowTest::IsEnabled(UINT command) const {
    for (int i = 0; i < GetMenuItemCount(GetMenu(Main())); ++i) {
        const HMENU menu = GetSubMenu(GetMenu(Main()), i);
        SendMessageW(Main(), WM_INITMENUPOPUP, reinterpret_cast<WPARAM>(menu), i);
    }
    return (GetMenuState(GetMenu(Main()), command, MF_BYCOMMAND) & MF_GRAYED) == 0;
}

std::vector<std::wstring> WindowTest::Column(HWND list, int column) const {
    std::vector<std::wstring> texts;
    for (int row = 0; row < ListView_GetItemCount(list); ++row) {
        wchar_t text[512] = L"";
        ListView_GetItemText(list, row, column, text, static_cast<int>(std::size(text)));
        texts.emplace_back(text);
    }
    return texts;
}

bool WindowTest::AwaitItems(const std::vector<std::wstring>& names) {
    return PumpUntil([&] {
        return explorer::IsShown(Child(IDC_LIST)) && !IsEnabled(IDM_STOP) && Items() == names;
    });
}

void WindowTest::Select(const std::wstring& name) {
    const std::vector<std::wstring> names = Items();
    const auto row = std::ranges::find(names, name);
    ASSERT_NE(row, names.end());
    constexpr UINT kBoth = LVIS_SELECTED | LVIS_FOCUSED;
    ListView_SetItemState(Child(IDC_LIST), -1, 0, kBoth);
    ListView_SetItemState(Child(IDC_LIST), static_cast<int>(row - names.begin()), kBoth, kBoth);
    SetFocus(Child(IDC_LIST));
}

std::wstring WindowTest::NoticeText() const {
    const HWND notice = Child(IDC_NOTICE);
    return explorer::IsShown(notice) ? TextOf(GetDlgItem(notice, IDC_NOTICE_TEXT)) : std::wstring();
}

bool WindowTest::AwaitTransfers(const std::vector<std::wstring>& states) {
    return PumpUntil([&] { return Column(TransferList(), 3) == states; });
}

void WindowTest::Drop(const std::vector<std::filesystem::path>& paths) {
    std::wstring names;
    for (const std::filesystem::path& path : paths) {
        names += path.wstring() + L'\0';
    }
    names += L'\0';
    const std::size_t bytes = names.size() * sizeof(wchar_t);
    const HGLOBAL memory = GlobalAlloc(GHND, sizeof(DROPFILES) + bytes); // freed by DragFinish
    auto* const drop = static_cast<DROPFILES*>(GlobalLock(memory));
    drop->pFiles = sizeof(DROPFILES);
    drop->fWide = TRUE;
    std::copy_n(reinterpret_cast<const char*>(names.data()), bytes,
                reinterpret_cast<char*>(drop + 1));
    GlobalUnlock(memory);
    PostMessageW(Main(), WM_DROPFILES, reinterpret_cast<WPARAM>(memory), 0);
}

void WindowTest::SignIn(const std::wstring& password) {
    ASSERT_TRUE(AwaitDialog(IDC_PASSWORD));
    Type(IDC_URL, explorer::Wide(m_service.Url()));
    Type(IDC_USER, L"ada");
    Type(IDC_PASSWORD, password);
    Press(IDOK);
}

void WindowTest::GoTo(const std::wstring& path) {
    if (Dialog()) {
        SignIn();
        ASSERT_TRUE(AwaitNoDialog());
    }
    Type(IDC_ADDRESS, path);
    Command(IDOK);
    ASSERT_TRUE(PumpUntil([&] {
        return !IsEnabled(IDM_STOP) && explorer::GetText(Child(IDC_ADDRESS)) == path &&
               NoticeText() != explorer::Text(IDS_LOADING);
    }));
}

std::filesystem::path WindowTest::Write(const std::wstring& name, const std::string& bytes) {
    const std::filesystem::path path = m_folder.Folder() / name;
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << bytes;
    return path;
}

std::string WindowTest::Read(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

} // namespace brevint::test
