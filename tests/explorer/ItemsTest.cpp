#include "tests/explorer/WindowFixture.h"

#include "explorer/system/Text.h"
#include "tests/support/Environment.h"

#include <psapi.h>

namespace brevint::test {
namespace {

using explorer::GetText;
using explorer::Text;

const std::vector<std::wstring> kBridge = {
    L"Фото 📷",    L"Bridge.project",         L"Empty.txt",
    L"Notes.txt", L"R&D 'plan' [draft].txt", L"Überblick — 概要.txt"};

class ItemsTest : public WindowTest {
protected:
    ItemsTest() { GoTo(L"/Projects"); }

    std::vector<std::wstring> Selected() {
        std::vector<std::wstring> names;
        const std::vector<std::wstring> all = Items();
        for (int row = -1;
             (row = ListView_GetNextItem(Child(IDC_LIST), row, LVNI_SELECTED)) >= 0;) {
            names.push_back(all.at(static_cast<std::size_t>(row)));
        }
        return names;
    }

    bool AwaitFocus(UINT control) {
        return PumpUntil([&] { return GetFocus() == Child(control); });
    }
};

TEST_F(ItemsTest, TheKeyboardAloneLeadsThroughTheFolders) {
    Select(L"Bridge");
    Key(VK_RETURN);
    ASSERT_TRUE(AwaitItems(kBridge));
    Select(L"Empty.txt");
    Key('F', VK_CONTROL);
    ASSERT_TRUE(AwaitFocus(IDC_SEARCH));
    Type(IDC_SEARCH, L"NOTE");
    EXPECT_EQ(Items(), std::vector<std::wstring>{L"Notes.txt"});
    EXPECT_TRUE(Selected().empty()) << "the user has not chosen it";
    Type(IDC_SEARCH, L"nothing like it");
    EXPECT_EQ(NoticeText(), Text(IDS_NOTHING_FOUND, {L"nothing like it"}));
    Key(VK_ESCAPE);
    ASSERT_TRUE(AwaitItems(kBridge));
    ASSERT_TRUE(AwaitFocus(IDC_LIST));
    Key(VK_UP, VK_MENU);
    ASSERT_TRUE(AwaitItems({L"Archive", L"Bridge", L"Big.bin"}));
    EXPECT_EQ(Selected(), std::vector<std::wstring>{L"Bridge"});
    Key('D', VK_MENU);
    ASSERT_TRUE(AwaitFocus(IDC_ADDRESS));
    Key(VK_TAB);
    ASSERT_TRUE(AwaitFocus(IDC_SEARCH));

    GoTo(L"/Projects/Bridge/Фото 📷");
    EXPECT_EQ(NoticeText(), Text(IDS_EMPTY_FOLDER));
    Type(IDC_ADDRESS, L"/Projects/Bridge/Notes.txt");
    Command(IDOK);
    ASSERT_TRUE(AwaitItems(kBridge));
    EXPECT_EQ(Selected(), std::vector<std::wstring>{L"Notes.txt"});
    Type(IDC_ADDRESS, L"/Projects/Nowhere");
    Command(IDOK);
    ASSERT_TRUE(PumpUntil([&] { return NoticeText().find(L"Nowhere") != std::wstring::npos; }));
    Key(VK_F5);
    EXPECT_TRUE(AwaitItems(kBridge));
}

TEST_F(ItemsTest, TheTreeOpensFoldersAndChoosesThem) {
    const HWND tree = Child(IDC_TREE);
    const HTREEITEM templates = TreeView_GetNextSibling(tree, TreeView_GetRoot(tree));
    TreeView_Expand(tree, templates, TVE_EXPAND);
    ASSERT_TRUE(PumpUntil([&] { return TreeView_GetChild(tree, templates) != nullptr; }));
    TreeView_SelectItem(tree, TreeView_GetChild(tree, templates));
    ASSERT_TRUE(AwaitItems({L"Inspection.template"}));
    EXPECT_EQ(GetText(Child(IDC_ADDRESS)), L"/Templates/Plans");
}

TEST_F(ItemsTest, EveryCommandIsGreyWhereItDoesNotApply) {
    GoTo(L"/Projects/Bridge");
    const auto expect = [&](const char* when, const std::vector<std::pair<UINT, bool>>& states) {
        for (const auto& [command, isEnabled] : states) {
            EXPECT_EQ(IsEnabled(command), isEnabled) << when << ", command " << command;
        }
    };
    expect("nothing is selected", {{IDM_OPEN, false},
                                   {IDM_DELETE, false},
                                   {IDM_CHECK_OUT, false},
                                   {IDM_UPLOAD, true},
                                   {IDM_UP, true},
                                   {IDM_SIGN_IN, false},
                                   {IDM_CLEAR, false}});
    Select(L"Notes.txt");
    expect("a file",
           {{IDM_OPEN, true}, {IDM_CHECK_OUT, true}, {IDM_CHECK_IN, false}, {IDM_REPLACE, true}});
    Command(IDM_CHECK_OUT);
    ASSERT_TRUE(PumpUntil([&] { return IsEnabled(IDM_CHECK_IN); }));
    expect("a file that is checked out", {{IDM_CHECK_OUT, false}, {IDM_CHECK_IN, true}});
    EXPECT_EQ(Items(4).at(3), L"ada");
    Command(IDM_CHECK_IN);
    ASSERT_TRUE(PumpUntil([&] { return IsEnabled(IDM_CHECK_OUT); }));
    Command(IDM_SELECT_ALL);
    expect("all",
           {{IDM_OPEN, false}, {IDM_CHECK_OUT, false}, {IDM_DELETE, true}, {IDM_DOWNLOAD, true}});
    Command(IDM_UP);
    expect("another folder is awaited", {{IDM_DELETE, false}, {IDM_UPLOAD, false}});
    Type(IDC_ADDRESS, L"/Projects/Bridge");
    Command(IDOK);
    expect("a path is followed", {{IDM_DELETE, false}, {IDM_UPLOAD, false}});
}

TEST_F(ItemsTest, FoldersAreMadeAndItemsDeletedOnceTheUserAgrees) {
    Command(IDM_NEW_FOLDER);
    ASSERT_TRUE(AwaitDialog(IDC_NAME));
    EXPECT_FALSE(IsWindowEnabled(GetDlgItem(Dialog(), IDOK)));
    Type(IDC_NAME, L" 2026 ");
    Press(IDOK);
    ASSERT_TRUE(AwaitItems({L"2026", L"Archive", L"Bridge", L"Big.bin"}));
    EXPECT_EQ(Selected(), std::vector<std::wstring>{L"2026"});

    Command(IDM_NEW_FOLDER); // there is one of that name
    ASSERT_TRUE(AwaitDialog(IDC_NAME));
    Type(IDC_NAME, L"2026");
    Press(IDOK);
    ASSERT_TRUE(AwaitDialog(IDC_MESSAGE_ICON));
    EXPECT_FALSE(explorer::IsShown(GetDlgItem(Dialog(), IDC_DETAILS_TEXT)));
    Press(IDC_DETAILS);
    EXPECT_NE(DialogText(IDC_DETAILS_TEXT).find(L"Exists"), std::wstring::npos) << "names the code";
    PressChoice(0);

    SetFocus(Child(IDC_LIST));
    Key(VK_DELETE);
    ASSERT_TRUE(AwaitDialog(IDC_MESSAGE_ICON));
    PressChoice(0); // no
    Key(VK_DELETE);
    ASSERT_TRUE(AwaitDialog(IDC_MESSAGE_ICON));
    EXPECT_NE(DialogText(IDC_STATE).find(L"2026"), std::wstring::npos);
    PressChoice(1);
    EXPECT_TRUE(AwaitItems({L"Archive", L"Bridge", L"Big.bin"}));
}

TEST_F(ItemsTest, NamesMayBeLongAndOfAnyScript) {
    const std::wstring name = L"שלום 📷 " + std::wstring(200, L'x');
    Command(IDM_NEW_FOLDER);
    ASSERT_TRUE(AwaitDialog(IDC_NAME));
    Type(IDC_NAME, name);
    Press(IDOK);
    ASSERT_TRUE(AwaitItems({L"Archive", L"Bridge", name, L"Big.bin"}));
    Key(VK_RETURN);
    ASSERT_TRUE(PumpUntil([&] { return GetText(Child(IDC_ADDRESS)) == L"/Projects/" + name; }));
    Key(VK_UP, VK_MENU);
    ASSERT_TRUE(AwaitItems({L"Archive", L"Bridge", name, L"Big.bin"}));
    EXPECT_EQ(Selected(), std::vector<std::wstring>{name});
    Command(IDM_SORT_FIRST); // by name it is sorted already
    EXPECT_EQ(Items(), (std::vector<std::wstring>{name, L"Bridge", L"Archive", L"Big.bin"}));
    EXPECT_EQ(Selected(), std::vector<std::wstring>{name});
}

TEST_F(ItemsTest, PropertiesAndPathsCanBeCopied) {
    Select(L"Big.bin");
    Command(IDM_PROPERTIES);
    EXPECT_EQ(DialogText(IDC_FIRST_PROPERTY + 1), L"/Projects/Big.bin");
    Press(IDCANCEL);
    Command(IDM_COPY_PATH);
    EXPECT_EQ(m_desktop.copied, L"/Projects/Big.bin");
}

TEST_F(ItemsTest, RefreshingLeavesNothingBehind) {
    const auto refresh = [&](int times) {
        for (int i = 0; i < times; ++i) {
            Command(IDM_REFRESH);
            ASSERT_TRUE(PumpUntil([&] { return !IsEnabled(IDM_STOP); }));
        }
    };
    const auto memory = [] {
        PROCESS_MEMORY_COUNTERS counters = {};
        GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
        return counters.PagefileUsage;
    };
    refresh(50); // until all that is kept is there
    const auto memoryBefore = memory();
    const std::size_t handlesBefore = CountHandles();
    refresh(150);
    EXPECT_LT(memory(), memoryBefore + 100'000);
    EXPECT_LT(CountHandles(), handlesBefore + 50);
}

TEST_F(ItemsTest, GrowsWithTheScreenAndRemembersItsSize) {
    ListView_SetColumnWidth(Child(IDC_LIST), 1, 123);
    for (const auto& [dpi, width] : {std::pair{192, 246}, {96, 123}}) {
        RECT wanted = {40, 50, 40 + 5 * dpi, 50 + 4 * dpi};
        SendMessageW(Main(), WM_DPICHANGED, MAKEWPARAM(dpi, dpi),
                     reinterpret_cast<LPARAM>(&wanted));
        EXPECT_EQ(ListView_GetColumnWidth(Child(IDC_LIST), 1), width);
    }
    RECT before = {};
    GetWindowRect(Main(), &before);
    CloseWindow();
    OpenWindow();
    RECT after = {};
    GetWindowRect(Main(), &after);
    EXPECT_TRUE(EqualRect(&before, &after));
    EXPECT_EQ(ListView_GetColumnWidth(Child(IDC_LIST), 1), 123);
}

} // namespace
} // namespace brevint::test
