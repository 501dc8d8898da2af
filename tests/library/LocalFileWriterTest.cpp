#include "support/LocalFileWriter.h"

#include "tests/library/Helpers.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

namespace brevint::test {
namespace {

namespace fs = std::filesystem;

/// Writes a file in the place of one with those permissions; where it has none, there is none.
void Replace(fs::perms permissions, bool finished) {
    const TempFolder folder;
    const std::wstring name = folder.Path(L"\u00dcberblick \U0001d11e.txt");
    const bool exists = permissions != fs::perms::none;
    if (exists) {
        WriteFile(name, "before");
        fs::permissions(FilePath(name), permissions);
    }
    const std::string before = ReadFile(name);
    {
        LocalFileWriter writer;
        EXPECT_FALSE(writer.Open(FilePath(name)));
        EXPECT_FALSE(writer.Write("after"));
        EXPECT_FALSE(writer.Write(std::string_view("\r\n\0\x1a", 4)));
        EXPECT_EQ(ReadFile(name), before);
        EXPECT_FALSE(finished && writer.Finish(true));
    }
    EXPECT_EQ(ReadFile(name), finished ? std::string("after\r\n\0\x1a", 9) : before);
    const auto left = std::distance(fs::directory_iterator(folder.Folder()), {});
    EXPECT_EQ(left, exists || finished ? 1 : 0);
}

TEST(LocalFileWriter, ReplacesAFileOnceItIsFinished) {
    for (const auto permissions : {fs::perms::none, fs::perms::owner_read, fs::perms::owner_all}) {
        Replace(permissions, true);
        Replace(permissions, false);
    }
}

TEST(LocalFileWriter, SaysWhereNothingCanBeWritten) {
    const TempFolder folder;
    WriteFile(folder.Path(L"file"), "before");
    LocalFileWriter writer;
    for (const wchar_t* name : {L"", L"missing/file", L"file/below", L"."}) {
        EXPECT_TRUE(writer.Open(FilePath(folder.Path(name)))) << FilePath(name);
    }
    EXPECT_TRUE(writer.Write("x"));
    EXPECT_TRUE(writer.Finish(true));
    EXPECT_EQ(ReadFile(folder.Path(L"file")), "before");
}

} // namespace
} // namespace brevint::test
