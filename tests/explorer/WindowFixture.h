#pragma once

#include "explorer/resources/Resource.h"
#include "explorer/view/Controls.h"
#include "explorer/view/MainWindow.h"
#include "service/ReferenceService.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace brevint::test {

/// A desktop whose user answers as a test says, and that remembers what it was asked for.
class ScriptedDesktop : public explorer::Desktop {
public:
    std::vector<std::filesystem::path> files;
    std::filesystem::path folder;
    std::filesystem::path opened;
    std::wstring copied;
    std::function<void()> meanwhile = [] {
    }; ///< While the user chooses files.

    std::vector<std::filesystem::path> ChooseFiles(HWND) override {
        meanwhile();
        return files;
    }
    std::filesystem::path ChooseFolder(HWND) override { return folder; }
    std::filesystem::path ChooseDestination(HWND, const std::wstring& name) override {
        return folder / name;
    }
    std::wstring Open(HWND, const std::filesystem::path& file) override {
        opened = file;
        return {};
    }
    bool Copy(HWND, const std::wstring& text) override {
        copied = text;
        return true;
    }
};

/// As the keyboard does, with the focus where it is.
void Key(WORD key, WORD modifier = 0);
void TypeKeys(std::wstring_view text);

/// The program's window, over the library and a service of its own. The test's thread is the
/// window's: nothing happens to the window but while PumpUntil is called.
class WindowTest : public testing::Test {
protected:
    static constexpr const wchar_t* kSettings = L"Software\\Brevint\\Explorer Test";

    explicit WindowTest(service::ServiceOptions options = {.patternFiles = {{"Big.bin", 300'000}}});
    ~WindowTest() override;

    void OpenWindow();
    /// As the user does, whatever is under way.
    void CloseWindow();
    void SignIn(const std::wstring& password = L"ada-secret");
    /// Opens the window, signs in and waits for the folder.
    void GoTo(const std::wstring& path);

    /// Serves the window until the condition holds. Fails the test after a minute.
    [[nodiscard]] bool PumpUntil(const std::function<bool()>& condition);

    HWND Main() const { return m_window->Handle(); }
    HWND Child(UINT id) const;
    /// The dialog that is open; null: none.
    HWND Dialog() const;
    std::wstring DialogText(UINT id) const;
    bool AwaitDialog(UINT control);
    bool AwaitNoDialog();
    /// Presses a button of the dialog.
    void Press(UINT id);
    void PressChoice(std::size_t fromTheRight);
    void Type(UINT control, const std::wstring& text);
    /// As the menu and the tool bar do.
    void Command(UINT id) { SendMessageW(Main(), WM_COMMAND, id, 0); }
    bool IsEnabled(UINT command) const;

    /// The texts of a column of the list or the transfers.
    std::vector<std::wstring> Column(HWND list, int column = 0) const;
    std::vector<std::wstring> Items(int column = 0) const {
        return Column(Child(IDC_LIST), column);
    }
    bool AwaitItems(const std::vector<std::wstring>& names);
    void Select(const std::wstring& name);
    std::wstring NoticeText() const;
    HWND TransferList() const { return GetDlgItem(Child(IDC_TRANSFERS), IDC_TRANSFER_LIST); }
    bool AwaitTransfers(const std::vector<std::wstring>& states);
    void Drop(const std::vector<std::filesystem::path>& paths);

    std::filesystem::path Write(const std::wstring& name, const std::string& bytes);
    static std::string Read(const std::filesystem::path& file);

    TempFolder m_folder;
    service::ReferenceService m_service;
    explorer::Dispatcher m_dispatcher;
    ScriptedDesktop m_desktop;
    std::unique_ptr<explorer::MainWindow> m_window;
    bool m_isClosed = false;
};

} // namespace brevint::test
