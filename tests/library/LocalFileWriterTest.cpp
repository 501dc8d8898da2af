#include "support/LocalFileWriter.h"

#include "tests/library/Helpers.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <optional>

namespace brevint::test {
namespace {

namespace fs = std::filesystem;

TEST(LocalFileWriter, ReplacesAFileOnceItIsFinished) {
    const struct {
        const char* what;
        std::optional<std::string> before;
        bool readOnly;
        bool finished;
    } cases[] = {
        {"new", std::nullopt, false, true},  {"new, abandoned", std::nullopt, false, false},
        {"old", "before", false, true},      {"old, abandoned", "before", false, false},
        {"read-only", "before", true, true}, {"read-only, abandoned", "before", true, false},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.what);
        const TempFolder folder;
        const std::wstring name = folder.Path(L"\u00dcberblick \U0001d11e.txt");
        if (test.before) {
            WriteFile(name, *test.before);
        }
        if (test.readOnly) {
            fs::permissions(FilePath(name), fs::perms::owner_read);
        }
        {
            LocalFileWriter writer;
            EXPECT_FALSE(writer.Open(FilePath(name)));
            EXPECT_FALSE(writer.Write("after"));
            EXPECT_FALSE(writer.Write(std::string_view("\r\n\0\x1a", 4)));
            EXPECT_EQ(ReadFile(name), test.before.value_or("(unreadable)"));
            if (test.finished) {
                EXPECT_FALSE(writer.Finish(true));
            }
        }
        EXPECT_EQ(ReadFile(name), test.finished ? std::string("after\r\n\0\x1a", 9)
                                                : test.before.value_or("(unreadable)"));
        const auto left = std::distance(fs::directory_iterator(folder.Folder()), {});
        EXPECT_EQ(left, test.before || test.finished ? 1 : 0);
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
