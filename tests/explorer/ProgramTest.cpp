#include "explorer/system/Handles.h"
#include "explorer/system/Text.h"
#include "tests/explorer/WindowFixture.h"

#include <chrono>
#include <fstream>
#include <optional>
#include <string>
#include <string_view>

namespace brevint::test {
namespace {

/// A program, driven from outside as by a user: by keys, and by what its menu sends.
class ProgramTest : public testing::Test {
protected:
    ~ProgramTest() override { TerminateProcess(m_process.get(), 1); } // if it has not ended

    void Start(std::wstring command) {
        STARTUPINFOW startup = {};
        startup.cb = sizeof startup;
        PROCESS_INFORMATION made = {};
        ASSERT_TRUE(CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr,
                                   nullptr, &startup, &made));
        m_process.reset(made.hProcess);
        m_id = made.dwProcessId;
        CloseHandle(made.hThread);
    }

    /// Closes the window in front, with which the program ends.
    void Close() const {
        PostMessageW(Front(), WM_CLOSE, 0, 0);
        EXPECT_FALSE(Await([] { return false; }));
        DWORD status = 1;
        GetExitCodeProcess(m_process.get(), &status);
        EXPECT_EQ(status, 0U);
    }

    /// Waits until the condition holds. Nothing tells of what another program shows, so this looks
    /// again and again, and gives up at once if the program ends.
    template <class Condition>
    [[nodiscard]] bool Await(Condition condition) const {
        constexpr DWORD kBetweenLooks = 10;
        const auto end = std::chrono::steady_clock::now() + std::chrono::minutes(1);
        while (!condition()) {
            if (std::chrono::steady_clock::now() > end ||
                WaitForSingleObject(m_process.get(), kBetweenLooks) != WAIT_TIMEOUT) {
                return false;
            }
        }
        return true;
    }

    /// The program's window that keys go to; null: it is another program's.
    HWND Front() const {
        const HWND front = GetForegroundWindow();
        DWORD owner = 0;
        GetWindowThreadProcessId(front, &owner);
        return owner == m_id ? front : nullptr;
    }
    bool AwaitDialog(UINT control) const {
        return Await([&] {
            return Front() && IsWindowVisible(GetDlgItem(Front(), static_cast<int>(control)));
        });
    }
    bool AwaitTitle(const std::wstring& title) const {
        return Await([&] {
            return Front() && GetDlgItem(Front(), IDC_LIST) && explorer::GetText(Front()) == title;
        });
    }
    bool AwaitFolder(const std::wstring& name, LRESULT count) const {
        return AwaitTitle(name + L" \x2013 Brevint Explorer") && Await([&] {
                   return SendMessageW(GetDlgItem(Front(), IDC_LIST), LVM_GETITEMCOUNT, 0, 0) ==
                          count;
               });
    }
    bool AwaitEnabled(UINT tool) const {
        return Await([&] {
            return SendMessageW(GetDlgItem(Front(), IDC_TOOLBAR), TB_ISBUTTONENABLED, tool, 0) != 0;
        });
    }
    void Command(UINT id) const { PostMessageW(Front(), WM_COMMAND, id, 0); }

    /// Answers a dialog of Windows for files.
    void Choose(const std::filesystem::path& path) const {
        const HWND main = Front();
        ASSERT_TRUE(Await([&] { return Front() && Front() != main; }));
        Key('A', VK_CONTROL);
        TypeKeys(path.wstring());
        Key(VK_RETURN);
    }

    HandlePtr m_process;
    DWORD m_id = 0;
};

/// The shipped program, with a profile of its own, so that what the user has chosen stays out of
/// it.
class ExplorerProgramTest : public ProgramTest {
protected:
    ExplorerProgramTest() { Start(L"brevint-explorer.exe --profile \"" + m_profile + L'"'); }
    ~ExplorerProgramTest() override {
        RegDeleteTreeW(HKEY_CURRENT_USER, (L"Software\\Brevint\\Explorer\\" + m_profile).c_str());
    }

    const std::wstring m_profile = L"Test " + std::to_wstring(GetCurrentProcessId());
};

TEST_F(ExplorerProgramTest, ServesAUserForADay) {
    const TempFolder local;
    const auto write = [&](const wchar_t* name, std::string_view bytes) {
        const std::filesystem::path path = local.Folder() / name;
        std::filesystem::create_directories(path.parent_path());
        std::ofstream(path, std::ios::binary) << bytes;
        return path;
    };
    std::optional<service::ReferenceService> service(std::in_place);
    service->Start();
    const std::string url = service->Url();
    Client other(url);
    other.SignIn("ada", "ada-secret");
    const auto find = [&](const char* path) {
        Error missing;
        const Item item = other.Find(kProjects, path, {.error = &missing});
        return missing ? std::nullopt : std::optional(item);
    };

    ASSERT_TRUE(AwaitDialog(IDC_PASSWORD));
    TypeKeys(explorer::Wide(url));
    Key(VK_TAB);
    TypeKeys(L"ada");
    Key(VK_TAB);
    TypeKeys(L"ada-secret");
    Key(VK_RETURN);
    ASSERT_TRUE(AwaitFolder(L"Projects", 2));
    Key('D', VK_MENU);
    TypeKeys(L"/Projects/Bridge");
    Key(VK_RETURN);
    ASSERT_TRUE(AwaitFolder(L"Bridge", 6));
    Key(VK_UP, VK_MENU);
    ASSERT_TRUE(AwaitFolder(L"Projects", 2));

    write(L"Tree/Branch/Leaf.txt", "leaf");
    Command(IDM_UPLOAD_FOLDER);
    Choose(local.Folder() / L"Tree");
    ASSERT_TRUE(AwaitFolder(L"Projects", 3));
    ASSERT_TRUE(Await([&] { return find("Tree/Branch/Leaf.txt").has_value(); }));

    Key('U', VK_CONTROL);
    Choose(write(L"Zenith.txt", "one"));
    ASSERT_TRUE(AwaitFolder(L"Projects", 4));
    Key('U', VK_CONTROL);
    Choose(write(L"Zenith.txt", "another"));
    ASSERT_TRUE(AwaitDialog(IDC_MESSAGE_ICON));
    Key('R', VK_MENU);
    ASSERT_TRUE(Await([&] { return find("Zenith.txt")->size == 7U; }));

    ASSERT_TRUE(AwaitFolder(L"Projects", 4));
    Key(VK_END);
    ASSERT_TRUE(AwaitEnabled(IDM_CHECK_OUT));
    Command(IDM_CHECK_OUT);
    ASSERT_TRUE(AwaitEnabled(IDM_CHECK_IN));
    EXPECT_EQ(find("Zenith.txt")->lockedBy, "ada");
    Command(IDM_CHECK_IN);
    ASSERT_TRUE(AwaitEnabled(IDM_CHECK_OUT));
    Key(VK_DELETE);
    ASSERT_TRUE(AwaitDialog(IDC_MESSAGE_ICON));
    Key('D', VK_MENU);
    ASSERT_TRUE(AwaitFolder(L"Projects", 3));
    EXPECT_FALSE(find("Zenith.txt"));

    // The server goes, and comes back with neither sessions nor files of before.
    const auto port = static_cast<std::uint16_t>(std::stoi(url.substr(url.rfind(':') + 1)));
    service.reset();
    Key(VK_F5);
    ASSERT_TRUE(AwaitTitle(L"Brevint Explorer"));
    service.emplace(service::ServiceOptions{.http = {.port = port}});
    service->Start();
    Key(VK_F5);
    ASSERT_TRUE(AwaitDialog(IDC_PASSWORD));
    TypeKeys(L"ada-secret");
    Key(VK_RETURN);
    ASSERT_TRUE(AwaitFolder(L"Projects", 2));

    Command(IDM_SIGN_OUT);
    ASSERT_TRUE(AwaitTitle(L"Brevint Explorer"));
    Close();
}

TEST_F(ProgramTest, TheWindowOfTheDocumentsShowsAFolder) {
    service::ReferenceService service;
    service.Start();
    Start(L"window_program.exe");
    constexpr int kAddress = 100;
    constexpr int kList = 103;
    ASSERT_TRUE(AwaitDialog(kAddress));
    Key(VK_HOME);
    Key(VK_END, VK_SHIFT);
    TypeKeys(explorer::Wide(service.Url()));
    Key(VK_TAB);
    Key(VK_TAB);
    TypeKeys(L"ada-secret");
    Key(VK_RETURN);
    EXPECT_TRUE(Await([&] { return SendDlgItemMessageW(Front(), kList, LB_GETCOUNT, 0, 0) == 2; }));
    Close();
}

} // namespace
} // namespace brevint::test
