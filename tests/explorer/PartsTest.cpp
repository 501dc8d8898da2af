#include "explorer/model/FolderModel.h"
#include "explorer/model/Location.h"
#include "explorer/system/OpenedFiles.h"
#include "explorer/system/SessionStore.h"
#include "explorer/system/Text.h"
#include "explorer/view/SignInDialog.h"
#include "service/ReferenceService.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

namespace brevint::test {
namespace {

using explorer::Column;
using explorer::FolderModel;

class FolderModelTest : public testing::Test {
protected:
    FolderModelTest()
        : m_service({.manyFiles = 12,
                     .patternFiles = {{"b10.bin", 5}, {"B9.bin", 7}, {"\xC3\xA4.txt", 7}}}) {
        m_service.Start();
        m_client.emplace(m_service.Url());
        m_client->SignIn("ada", "ada-secret");
        m_client->CheckOut({kProjects, "B9.bin"});
        m_client->CreateFolder(kProjects, "New");
        m_model = FolderModel(m_client->List(kProjects));
    }

    std::vector<std::wstring> Names() const {
        std::vector<std::wstring> names;
        for (std::size_t row = 0; row < m_model.RowCount(); ++row) {
            names.push_back(m_model.CellText(row, Column::Name));
        }
        return names;
    }

    service::ReferenceService m_service;
    std::optional<Client> m_client;
    FolderModel m_model;
};

TEST_F(FolderModelTest, SortsByEveryColumnWithFoldersFirst) {
    const struct {
        Column column;
        bool isDescending;
        std::vector<std::wstring> expected;
    } cases[] = {
        {Column::Name,
         false,
         {L"Archive", L"Bridge", L"Many", L"New", L"ä.txt", L"B9.bin", L"b10.bin"}},
        {Column::Name,
         true,
         {L"New", L"Many", L"Bridge", L"Archive", L"b10.bin", L"B9.bin", L"ä.txt"}},
        {Column::Size,
         false,
         {L"Archive", L"Bridge", L"Many", L"New", L"b10.bin", L"ä.txt", L"B9.bin"}},
        {Column::Modified,
         true,
         {L"New", L"Archive", L"Bridge", L"Many", L"ä.txt", L"B9.bin", L"b10.bin"}},
        {Column::LockedBy,
         true,
         {L"Archive", L"Bridge", L"Many", L"New", L"B9.bin", L"ä.txt", L"b10.bin"}},
        {Column::Description,
         true,
         {L"Bridge", L"Archive", L"Many", L"New", L"ä.txt", L"B9.bin", L"b10.bin"}},
    };
    for (const auto& [column, isDescending, expected] : cases) {
        m_model.Arrange(column, isDescending, {});
        EXPECT_EQ(Names(), expected) << static_cast<int>(column);
    }
    m_model = FolderModel(m_client->List({kProjects, "Bridge"}));
    m_model.Arrange(Column::Type, true, {});
    EXPECT_EQ(Names().at(1), L"Bridge.project") << "after the folder, and before plain files";
}

TEST_F(FolderModelTest, FiltersAndFindsWithoutCase) {
    m_model.Arrange(Column::Name, false, L"B");
    EXPECT_EQ(Names(), (std::vector<std::wstring>{L"Bridge", L"B9.bin", L"b10.bin"}));
    EXPECT_EQ(m_model.RowOfPrefix(L"B1", 0), 2U);
    EXPECT_EQ(m_model.RowOfPrefix(L"brid", 2), 0U) << "from the beginning again";
    EXPECT_FALSE(m_model.RowOfPrefix(L"Archive", 0));
    EXPECT_TRUE(m_model.FindName(L"ARCHIVE")) << "though it is not shown";
    EXPECT_EQ(m_model.RowOf(m_model.IdOf(1)), 1U);
}

TEST_F(FolderModelTest, APathLeadsToAFolderOrAFileInIt) {
    const explorer::Found file = explorer::Follow(*m_client, "/Projects/Bridge/Notes.txt", {});
    EXPECT_EQ(explorer::PathOf(file.folder), "/Projects/Bridge");
    EXPECT_FALSE(file.fileId.empty());
    EXPECT_EQ(explorer::PathOf(explorer::Follow(*m_client, "Templates//Plans/", {}).folder),
              "/Templates/Plans");
    for (const char* path : {"", "/", "/Nowhere", "/Projects/None", "/Projects/B9.bin/More"}) {
        EXPECT_THROW(explorer::Follow(*m_client, path, {}), Exception) << path;
    }
}

TEST(LocalNames, KeepTheEndingThatCounts) {
    const struct {
        const char* name;
        const wchar_t* local;
        bool isProgram;
    } cases[] = {
        {"Plan.txt", L"Plan.txt", false},
        {"a/b\\c:d", L"a_b_c_d", false},
        {"Setup.exe. .", L"Setup.exe", true}, // Windows drops what ends it
        {"Photo.jpg .SCR", L"Photo.jpg .SCR", true},
        {"com1.txt", L"_com1.txt", false},
        {"NUL", L"_NUL", false},
        {"...", L"_", false},
        {"run.ps1", L"run.ps1", true},
        {".bat", L".bat", true},
        {".profile", L".profile", false},
    };
    for (const auto& [name, local, isProgram] : cases) {
        EXPECT_EQ(explorer::LocalName(name), local);
        EXPECT_EQ(explorer::IsProgram(explorer::LocalName(name)), isProgram) << name;
    }
    std::string longest(304, 'x');
    longest.replace(300, 4, ".exe");
    const std::wstring longName = explorer::LocalName(longest);
    EXPECT_LE(longName.size(), 200U);
    EXPECT_TRUE(explorer::IsProgram(longName));
    EXPECT_EQ(explorer::DisplayText(L"ann\u202Ecod.exe"), L"ann\uFFFDcod.exe");
    EXPECT_EQ(explorer::DisplayText(L"שלום 📷"), L"שלום 📷");
}

TEST(SessionStoreTest, KeepsASessionThatOnlyTheUserCanRead) {
    const TempFolder folder;
    explorer::SessionStore store(folder.Folder() / L"Brevint" / L"Explorer");
    EXPECT_FALSE(store.Load());
    ASSERT_TRUE(store.Save({"https://host/app", "Zoë", "cookie=secret"}));
    const auto loaded = store.Load();
    ASSERT_TRUE(loaded);
    EXPECT_EQ(loaded->url + loaded->user + loaded->session, "https://host/appZoëcookie=secret");

    const std::filesystem::path file = folder.Folder() / L"Brevint" / L"Explorer" / L"session";
    std::ifstream stream(file, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(stream), {}};
    EXPECT_EQ(bytes.find("secret"), std::string::npos);
    stream.close();
    std::ofstream(file, std::ios::binary | std::ios::trunc) << "nothing that was protected";
    EXPECT_FALSE(store.Load());
    store.Forget();
    EXPECT_FALSE(std::filesystem::exists(file));
}

TEST(OpenedFilesTest, ClearsUpAfterProgramsThatCouldNot) {
    const TempFolder folder;
    const std::filesystem::path left = folder.Folder() / L"Brevint Explorer 4294967292";
    const std::filesystem::path foreign = folder.Folder() / L"Brevint Explorer 4294967292 mine";
    std::filesystem::create_directories(left / L"1");
    std::filesystem::create_directories(foreign);
    {
        explorer::OpenedFiles files(folder.Folder());
        EXPECT_FALSE(std::filesystem::exists(left));
        EXPECT_TRUE(std::filesystem::remove(foreign)) << "it is no program's";
        std::ofstream(files.NewPath(L"a.txt")) << "one";
        std::ofstream(files.NewPath(L"a.txt")) << "another of that name";
        const explorer::OpenedFiles other(folder.Folder());
        EXPECT_TRUE(std::filesystem::exists(files.Folder() / L"1" / L"a.txt"));
    }
    EXPECT_TRUE(std::filesystem::is_empty(folder.Folder()));
}

TEST(Addresses, GetTheSchemeThatUsersLeaveOut) {
    EXPECT_EQ(explorer::CompleteUrl(" host/app "), "https://host/app");
    EXPECT_EQ(explorer::CompleteUrl("http://127.0.0.1:8080"), "http://127.0.0.1:8080");
    EXPECT_EQ(explorer::CompleteUrl("  "), "");
}

} // namespace
} // namespace brevint::test
