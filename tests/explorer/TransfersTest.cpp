#include "tests/explorer/WindowFixture.h"

#include "explorer/system/Text.h"

#include <chrono>

namespace brevint::test {
namespace {

namespace fs = std::filesystem;
using explorer::Text;
using service::Misbehaviour;

class TransfersTest : public WindowTest {
protected:
    TransfersTest() { GoTo(L"/Projects"); }

    /// Begins a download that does not end by itself.
    void BeginEndless() {
        m_service.Misbehave({.breakOff = Misbehaviour::Break::Silence, .breakAfter = 100'000});
        Select(L"Big.bin");
        Command(IDM_DOWNLOAD);
        ASSERT_TRUE(PumpUntil([&] { return !Column(TransferList(), 2).back().empty(); }));
    }

    /// So the status bar says.
    bool NoneIsUnderWay() const {
        return LOWORD(SendMessageW(Child(IDC_STATUS), SB_GETTEXTLENGTHW, 1, 0)) == 0;
    }

    void SelectTransfer(int index) {
        ListView_SetItemState(TransferList(), index, LVIS_SELECTED, LVIS_SELECTED);
    }

    /// Opens what is selected, up to the program that is meant for it.
    bool AwaitOpened() {
        const auto isAsked = [&] {
            return DialogText(IDC_STATE).find(L"marked") != std::wstring::npos;
        };
        const bool arrived = PumpUntil([&] { return !m_desktop.opened.empty() || isAsked(); });
        if (isAsked()) { // there is no place for the mark
            PressChoice(1);
        }
        return arrived && !m_desktop.opened.empty();
    }
};

TEST_F(TransfersTest, DownloadsFilesAndFoldersAndAsksBeforeItReplaces) {
    Select(L"Big.bin");
    Command(IDM_DOWNLOAD);
    ASSERT_TRUE(AwaitTransfers({Text(IDS_FINISHED)}));
    EXPECT_EQ(fs::file_size(m_folder.Folder() / "Big.bin"), 300'000U);
    EXPECT_EQ(Column(TransferList(), 2).at(0), L"100 %");
    Command(IDM_CLEAR);
    EXPECT_TRUE(Column(TransferList()).empty());

    Write(L"Big.bin", "mine");
    Command(IDM_SELECT_ALL);
    Command(IDM_DOWNLOAD);
    ASSERT_TRUE(AwaitDialog(IDC_MESSAGE_ICON));
    PressChoice(1); // skip it
    ASSERT_TRUE(PumpUntil([&] {
        return Column(TransferList(), 3) ==
               std::vector<std::wstring>{Text(IDS_FILES_FINISHED, {L"1"}),
                                         Text(IDS_FILES_FINISHED, {L"5"})};
    }));
    EXPECT_EQ(Read(m_folder.Folder() / "Big.bin"), "mine");
    EXPECT_EQ(Read(m_folder.Folder() / L"Bridge" / L"Überblick — 概要.txt"), "Grüße\n");
}

TEST_F(TransfersTest, ItemsOfOneLocalNameAreNotStoredOverEachOther) {
    Client client(m_service.Url());
    client.SignIn("ada", "ada-secret");
    for (const char* name : {"Plan.", "plan"}) {
        client.CreateFolder({kProjects, "Archive"}, name);
    }
    GoTo(L"/Projects/Archive");
    Command(IDM_SELECT_ALL);
    Command(IDM_DOWNLOAD);
    ASSERT_TRUE(AwaitDialog(IDC_MESSAGE_ICON));
    PressChoice(0);
    EXPECT_EQ(Column(TransferList()).size() + 1, Items().size());
}

TEST_F(TransfersTest, UploadsWhatIsDroppedAndReplacesWhatIsThere) {
    const fs::path file = Write(L"Été 📷.txt", "one");
    Write(L"Tree/Branch/Leaf.txt", "leaf");
    Drop({file, m_folder.Folder() / "Tree"});
    ASSERT_TRUE(AwaitItems({L"Archive", L"Bridge", L"Tree", L"Big.bin", L"Été 📷.txt"}));
    ASSERT_TRUE(
        PumpUntil([&] { return !IsEnabled(IDM_CANCEL) && Column(TransferList()).size() == 2; }));

    Write(L"Été 📷.txt", "another");
    Drop({file, Write(L"Bridge", "a file with a folder's name")});
    ASSERT_TRUE(AwaitDialog(IDC_MESSAGE_ICON));
    EXPECT_NE(DialogText(IDC_STATE).find(L"Été"), std::wstring::npos) << "it alone is there";
    PressChoice(2); // replace it
    ASSERT_TRUE(PumpUntil([&] {
        return Items(1) == std::vector<std::wstring>{L"", L"", L"", L"292 KB", L"7 bytes"};
    }));
    m_desktop.files = {file};
    m_desktop.meanwhile = [this] {
        GoTo(L"/Projects/Tree/Branch");
    };
    Command(IDM_UPLOAD);
    EXPECT_EQ(DialogText(IDC_STATE), Text(IDS_FOLDER_LEFT));
    EXPECT_EQ(Items(), std::vector<std::wstring>{L"Leaf.txt"});
    EXPECT_FALSE(IsEnabled(IDM_CANCEL)) << "nothing is uploaded";
    PressChoice(0);
}

TEST_F(TransfersTest, AFailureIsToldInWordsAndWhatHasEndedCanBeTriedAgain) {
    Drop({Write(L"Setup.exe", "MZ")}); // the service takes no programs
    ASSERT_TRUE(PumpUntil([&] {
        return !Column(TransferList()).empty() &&
               Column(TransferList(), 3).front().find(L"does not accept") != std::wstring::npos;
    }));
    SelectTransfer(0);
    Command(IDM_TRANSFER_DETAILS);
    ASSERT_TRUE(AwaitDialog(IDC_MESSAGE_ICON));
    EXPECT_NE(DialogText(IDC_DETAILS_TEXT), L"");
    PressChoice(0);
    BeginEndless();
    Command(IDM_CLEAR);
    EXPECT_FALSE(IsEnabled(IDM_CANCEL)) << "the one that was selected is gone";
    SelectTransfer(0);
    Command(IDM_CANCEL);
    ASSERT_TRUE(AwaitTransfers({Text(IDS_CANCELLED)}));
    EXPECT_FALSE(IsEnabled(IDM_CANCEL));
    m_service.Misbehave({});
    Command(IDM_SIGN_OUT);
    ASSERT_TRUE(PumpUntil([&] { return NoticeText() == Text(IDS_NOT_SIGNED_IN); }));
    Command(IDM_RETRY); // which needs a session
    SignIn();
    ASSERT_TRUE(AwaitNoDialog());
    Command(IDM_RETRY);
    ASSERT_TRUE(AwaitTransfers({Text(IDS_FINISHED)}));
    Command(IDM_CLEAR);
    EXPECT_TRUE(Column(TransferList()).empty());
}

TEST_F(TransfersTest, ATransferThatStandsStillSaysSoAndClosingTheWindowAsks) {
    BeginEndless();
    const std::wstring silent = Text(IDS_SILENT, {L""});
    ASSERT_TRUE(PumpUntil([&] { return Column(TransferList(), 3).front().starts_with(silent); }));
    SendMessageW(Main(), WM_CLOSE, 0, 0);
    ASSERT_TRUE(AwaitDialog(IDC_MESSAGE_ICON));
    PressChoice(0); // stay
    EXPECT_FALSE(m_isClosed);
    SendMessageW(Main(), WM_CLOSE, 0, 0);
    ASSERT_TRUE(AwaitDialog(IDC_MESSAGE_ICON));
    PressChoice(1);
    EXPECT_TRUE(m_isClosed);
    EXPECT_FALSE(fs::exists(m_folder.Folder() / "Big.bin"));
}

TEST_F(TransfersTest, TheWindowCanBeClosedAtAnyMoment) {
    m_service.Misbehave({.bytesPerSecond = 200'000});
    const fs::path file = Write(L"Tree/Sent.bin", std::string(300'000, 'x'));
    for (unsigned round = 0; round < 8; ++round) {
        const unsigned moment = round * 12;
        SCOPED_TRACE("after messages: " + std::to_string(moment));
        Drop({file.parent_path()});
        Command(IDM_SELECT_ALL);
        Command(IDM_DOWNLOAD);
        if (Dialog()) { // what an earlier round has brought
            PressChoice(2);
        }
        Command(IDM_REFRESH);
        // One that pauses before another attempt sends none.
        const auto latest = std::chrono::steady_clock::now() + std::chrono::seconds(1);
        unsigned passed = 0;
        ASSERT_TRUE(PumpUntil([&] {
            return passed++ == moment || NoneIsUnderWay() ||
                   std::chrono::steady_clock::now() > latest;
        }));
        CloseWindow();
        OpenWindow();
        GoTo(L"/Projects");
    }
    CloseWindow();
    for (const auto& entry : fs::recursive_directory_iterator(m_folder.Folder())) {
        EXPECT_EQ(entry.path().wstring().find(L".part"), std::wstring::npos) << entry.path();
    }
}

TEST_F(TransfersTest, OpensFilesInAFolderThatIsGoneAfterwards) {
    GoTo(L"/Projects/Bridge");
    Select(L"Notes.txt");
    Command(IDM_OPEN);
    ASSERT_TRUE(AwaitOpened());
    EXPECT_EQ(m_desktop.opened.filename(), L"Notes.txt");
    EXPECT_EQ(Read(m_desktop.opened), "Span 3 needs a second look.\n");
    CloseWindow();
    EXPECT_FALSE(fs::exists(m_desktop.opened.parent_path().parent_path()));
}

TEST_F(TransfersTest, AsksBeforeItOpensAProgram) {
    Drop({Write(L"Photo.txt.scr", "MZ")});
    ASSERT_TRUE(PumpUntil([&] { return Items().size() == 4; }));
    Select(Items().back());
    Command(IDM_OPEN);
    ASSERT_TRUE(AwaitDialog(IDC_MESSAGE_ICON));
    EXPECT_NE(DialogText(IDC_STATE).find(L"Photo.txt.scr"), std::wstring::npos);
    PressChoice(0); // rather not
    EXPECT_EQ(Column(TransferList()).size(), 1U) << "only the upload";
    Command(IDM_OPEN);
    ASSERT_TRUE(AwaitDialog(IDC_MESSAGE_ICON));
    PressChoice(1);
    EXPECT_TRUE(AwaitOpened());
}

} // namespace
} // namespace brevint::test
