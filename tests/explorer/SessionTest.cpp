#include "tests/explorer/WindowFixture.h"

#include "explorer/system/Text.h"
#include "explorer/view/NameDialog.h"
#include "tests/support/ScriptedServer.h"

namespace brevint::test {
namespace {

using explorer::Text;
using explorer::Wide;

const std::vector<std::wstring> kTop = {L"Archive", L"Bridge", L"Big.bin"};

class SessionTest : public WindowTest {
protected:
    std::wstring Setting(const wchar_t* name) {
        return explorer::Settings(kSettings).GetText(name);
    }
};

TEST_F(SessionTest, TellsARefusalInTheDialogAndSignsInAfterIt) {
    SignIn(L"wrong");
    ASSERT_TRUE(PumpUntil([&] { return IsWindowEnabled(GetDlgItem(Dialog(), IDOK)); }));
    EXPECT_NE(DialogText(IDC_STATE), L"");
    EXPECT_EQ(GetFocus(), GetDlgItem(Dialog(), IDC_PASSWORD));
    Type(IDC_PASSWORD, L"ada-secret");
    Press(IDOK);
    ASSERT_TRUE(AwaitItems(kTop));
    EXPECT_FALSE(Dialog());
    EXPECT_TRUE(PumpUntil(
        [&] { return explorer::GetText(Main()) == L"Projects \x2013 Brevint Explorer"; }));
    EXPECT_EQ(Setting(L"Address"), Wide(m_service.Url()));
    EXPECT_EQ(Setting(L"User"), L"ada");

    CloseWindow(); // without having asked to stay signed in
    OpenWindow();
    ASSERT_TRUE(AwaitDialog(IDC_PASSWORD));
    EXPECT_EQ(DialogText(IDC_USER), L"ada");
    EXPECT_EQ(DialogText(IDC_PASSWORD), L"");
}

TEST_F(SessionTest, StaysSignedInUntilTheUserSignsOut) {
    CheckDlgButton(Dialog(), IDC_STAY, BST_CHECKED);
    SignIn();
    ASSERT_TRUE(AwaitItems(kTop));
    CloseWindow();
    OpenWindow();
    ASSERT_TRUE(AwaitItems(kTop));
    EXPECT_FALSE(Dialog());

    Command(IDM_SIGN_OUT);
    ASSERT_TRUE(PumpUntil([&] { return NoticeText() == Text(IDS_NOT_SIGNED_IN); }));
    EXPECT_TRUE(Items().empty());
    CloseWindow();
    OpenWindow();
    EXPECT_TRUE(AwaitDialog(IDC_PASSWORD));
}

TEST_F(SessionTest, GoesOnWithWhatWasWantedAfterTheSessionHasEnded) {
    GoTo(L"/Projects");
    m_service.Misbehave({.endsSession = true, .requests = 1});
    Select(L"Big.bin");
    Command(IDM_DOWNLOAD);
    ASSERT_TRUE(
        PumpUntil([&] { return Column(TransferList(), 3) == std::vector{Text(IDS_FINISHED)}; }));
    Type(IDC_ADDRESS, L"/Projects/Bridge");
    Command(IDOK);
    ASSERT_TRUE(AwaitDialog(IDC_PASSWORD));
    EXPECT_EQ(DialogText(IDC_STATE), Text(IDS_SESSION_ENDED));
    Type(IDC_PASSWORD, L"ada-secret");
    Type(IDC_URL, Wide(m_service.Url()) + L"/mistyped");
    Press(IDOK);
    ASSERT_TRUE(PumpUntil([&] { return IsWindowEnabled(GetDlgItem(Dialog(), IDOK)); }));
    SignIn();
    ASSERT_TRUE(PumpUntil([&] { return Items().size() == 6; }));
    EXPECT_EQ(explorer::GetText(Child(IDC_ADDRESS)), L"/Projects/Bridge");
}

TEST_F(SessionTest, NothingThatOneUserWantedIsDoneForAnother) {
    GoTo(L"/Projects/Bridge");
    Drop({Write(L"Setup.exe", "MZ")}); // which is refused
    ASSERT_TRUE(PumpUntil([&] { return IsEnabled(IDM_CLEAR); }));
    ListView_SetItemState(TransferList(), 0, LVIS_SELECTED, LVIS_SELECTED);
    EXPECT_TRUE(IsEnabled(IDM_RETRY));
    m_service.Misbehave({.endsSession = true, .requests = 1});
    Select(L"Notes.txt");
    Command(IDM_DOWNLOAD);
    ASSERT_TRUE(PumpUntil([&] { return Column(TransferList(), 3).back() == Text(IDS_FINISHED); }));
    Select(L"Bridge.project");
    Command(IDM_DOWNLOAD);
    Select(L"Notes.txt");
    Command(IDM_DELETE);
    Command(IDM_CHECK_OUT);
    ASSERT_TRUE(AwaitDialog(IDC_PASSWORD));
    ASSERT_TRUE(
        PumpUntil([&] { return Column(TransferList(), 3).back() == Text(IDS_NEEDS_SIGN_IN); }));
    Type(IDC_USER, L"ben");
    Type(IDC_PASSWORD, L"ben-secret");
    Press(IDOK);
    ASSERT_TRUE(AwaitDialog(IDC_MESSAGE_ICON));
    EXPECT_NE(DialogText(IDC_STATE).find(L"Notes.txt"), std::wstring::npos) << "it was not done";
    PressChoice(0);
    EXPECT_FALSE(Dialog()) << "nor is the other one asked what to delete";
    EXPECT_FALSE(IsEnabled(IDM_RETRY));
    ASSERT_TRUE(AwaitItems(kTop));
    GoTo(L"/Projects/Bridge");
    EXPECT_EQ(Items(4), std::vector<std::wstring>(6)) << "nobody has checked out anything";
    EXPECT_FALSE(std::filesystem::exists(m_folder.Folder() / L"Bridge.project"))
        << "nor downloaded";
}

TEST_F(SessionTest, WhatIsGivenUpEndsAtOnceAndNeverWaits) {
    explorer::Worker worker(m_dispatcher.GetExecutor());
    int questions = 0;
    explorer::Session session(worker, m_dispatcher.GetExecutor(),
                              {.onCallsChanged = [] {},
                               .onSignInNeeded =
                                   [&questions] {
                                       ++questions;
                                   }});
    std::vector<Failure> ends;
    const auto call = [&](Failure failure, explorer::Session::CallId dropped) {
        session.Call([failure](Client&, const CallOptions&) -> bool { throw Exception({failure}); },
                     [&ends, &session, dropped](const explorer::Reply<bool>& reply) {
                         ends.push_back(reply.error.failure);
                         session.Drop(dropped);
                     });
    };
    call(Failure::NotFound, 2); // without a service these wait
    call(Failure::NotFound, 0);
    session.FailCalls();
    EXPECT_EQ(ends, std::vector{Failure::NotSignedIn}) << "the second one was dropped";

    Error error;
    const std::string url = "http://localhost:1/app";
    session.Open(url, session.ClientFor(url, true, error));
    EXPECT_TRUE(session.IsAt("HTTP://LOCALHOST:1/app/"));
    EXPECT_FALSE(session.IsAt("http://localhost:1/App"));
    call(Failure::NotSignedIn, 0);
    session.GiveUp();
    EXPECT_EQ(ends.back(), Failure::Cancelled);
    call(Failure::NotFound, 0);
    ASSERT_TRUE(PumpUntil([&] { return ends.back() == Failure::NotFound; }));
    EXPECT_EQ(ends.size(), 3U);
    EXPECT_EQ(questions, 2) << "those without a service";
}

TEST_F(SessionTest, ASilentServerCanBeGivenUpAtOnce) {
    ScriptedServer silent;
    silent.OnConnect().Wait("never");
    ASSERT_TRUE(AwaitDialog(IDC_PASSWORD));
    Type(IDC_URL, silent.Url(""));
    Type(IDC_USER, L"ada");
    Type(IDC_PASSWORD, L"ada-secret");
    Press(IDOK);
    ASSERT_TRUE(PumpUntil([&] { return silent.AwaitArrivalAt("never"); }));
    EXPECT_EQ(DialogText(IDC_STATE), Text(IDS_SIGNING_IN));
    Press(IDCANCEL);
    ASSERT_TRUE(PumpUntil([&] { return IsWindowEnabled(GetDlgItem(Dialog(), IDOK)); }));
    Press(IDCANCEL);
    ASSERT_TRUE(AwaitNoDialog());
    EXPECT_EQ(NoticeText(), Text(IDS_NOT_SIGNED_IN));
}

TEST_F(SessionTest, TellsThatThereIsNoService) {
    GoTo(L"/Projects");
    m_service.Stop();
    Command(IDM_REFRESH);
    ASSERT_TRUE(PumpUntil([&] { return !NoticeText().empty(); }));
    EXPECT_TRUE(Items().empty());
    EXPECT_FALSE(IsEnabled(IDM_UPLOAD));
    EXPECT_TRUE(IsEnabled(IDM_REFRESH));
}

TEST_F(SessionTest, DialogsCloseInAnyOrder) {
    const HWND owner = CreateWindowW(WC_STATICW, L"", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 100,
                                     100, nullptr, nullptr, nullptr, nullptr);
    explorer::DialogStack dialogs(m_dispatcher.GetExecutor());
    dialogs.SetOwner(owner);
    const auto show = [&] {
        dialogs.Show(std::make_unique<explorer::NameDialog>(L"", L"", [](const std::wstring&) {}));
        return dialogs.Top()->Handle();
    };
    for (const bool isLowerFirst : {true, false}) {
        const HWND below = show();
        explorer::Dialog* const lower = dialogs.Top();
        const HWND above = show();
        EXPECT_FALSE(IsWindowEnabled(below));
        (isLowerFirst ? lower : dialogs.Top())->Refuse();
        EXPECT_EQ(dialogs.Top()->Handle(), isLowerFirst ? above : below);
        EXPECT_TRUE(IsWindow(dialogs.Top()->Handle()));
        EXPECT_TRUE(IsWindowEnabled(dialogs.Top()->Handle()));
        EXPECT_FALSE(IsWindowEnabled(owner));
        dialogs.Top()->Refuse();
        EXPECT_TRUE(IsWindowEnabled(owner));
    }
    DestroyWindow(owner);
    dialogs.ShowError({});
    EXPECT_FALSE(dialogs.Top()) << "the owner is gone";
}

} // namespace
} // namespace brevint::test
