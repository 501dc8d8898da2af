#include "support/LocalFileWriter.h"

#include "tests/library/Helpers.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

namespace brevint::test {
namespace {

namespace fs = std::filesystem;
constexpr auto kResumable = LocalFileWriter::Part::Resumable;

struct ResumablePart : testing::Test {
    /// Leaves a part and a record.
    void Leave() {
        EXPECT_FALSE(writer.Open(target, kResumable));
        EXPECT_FALSE(writer.Write("before"));
        EXPECT_FALSE(writer.WriteRecord("older"));
        EXPECT_FALSE(writer.WriteRecord("record"));
        writer.Keep();
    }
    fs::path Find(const char* ending) const { return FindFile(folder.Folder(), ending); }

    const TempFolder folder;
    const fs::path target = folder.Folder() / "target";
    const fs::path other = folder.Folder() / "other";
    LocalFileWriter writer;
};

TEST_F(ResumablePart, GoesOnWhereAnotherWriterStopped) {
    WriteFile(other.wstring(), "");
    for (const std::string content : {"new", "newer"}) {
        Leave();
        ASSERT_FALSE(writer.Open(target, kResumable));
        EXPECT_EQ(writer.Size(), 6U);
        EXPECT_EQ(writer.ReadRecord(), "record");
        EXPECT_EQ(writer.Truncate(7), std::errc::invalid_argument);
        EXPECT_FALSE(writer.Write("!"));
        EXPECT_FALSE(writer.Truncate(4));
        EXPECT_EQ(writer.ReadRecord(), "record");
        EXPECT_EQ(writer.Size(), 4U);
        EXPECT_FALSE(writer.Write(content));
        EXPECT_FALSE(writer.Finish(false));
        EXPECT_EQ(ReadFile(target.wstring()), "befo" + content);
        EXPECT_EQ(fs::status(target).permissions(), fs::status(other).permissions());
        EXPECT_EQ(std::distance(fs::directory_iterator(folder.Folder()), {}), 2);
    }
    // What is begun anew is not what the record is about.
    Leave();
    ASSERT_FALSE(writer.Open(target, kResumable));
    EXPECT_FALSE(writer.Truncate(0));
    EXPECT_EQ(Find(".record"), fs::path());
}

TEST_F(ResumablePart, BelongsToOneWriterAtATime) {
    LocalFileWriter second;
    ASSERT_FALSE(writer.Open(target, kResumable));
    EXPECT_EQ(second.Open(target, kResumable), std::errc::device_or_resource_busy);
    EXPECT_FALSE(second.Open(other, kResumable));
    writer.Abandon();
    EXPECT_FALSE(second.Open(target, kResumable));
    second.Abandon();
    EXPECT_TRUE(fs::is_empty(folder.Folder()));
}

TEST_F(ResumablePart, IsNotUsedOnceItIsOldOrHasAnotherName) {
    const std::pair<const char*, std::uint64_t> cases[] = {
        {"old", 0}, {".part", 0}, {".record", 6}};
    for (const auto& [ending, left] : cases) {
        SCOPED_TRACE(ending);
        Leave();
        const fs::path found = Find(ending);
        if (found.empty()) {
            const auto now = fs::file_time_type::clock::now();
            fs::last_write_time(Find(".part"), now - std::chrono::hours(169));
        } else {
            fs::create_hard_link(found, folder.Folder() / (ending + 1));
        }
        ASSERT_FALSE(writer.Open(target, kResumable));
        EXPECT_EQ(writer.Size(), left);
        EXPECT_EQ(writer.ReadRecord(), "");
        EXPECT_FALSE(writer.WriteRecord("new"));
        EXPECT_EQ(writer.ReadRecord(), "new");
        EXPECT_FALSE(writer.Write("after"));
    }
    EXPECT_EQ(writer.WriteRecord(std::string(65'537, 'x')), std::errc::file_too_large);
    EXPECT_EQ(ReadFile(folder.Path(L"part")), "before");
    EXPECT_EQ(ReadFile(folder.Path(L"record")), "record");
}

} // namespace
} // namespace brevint::test
