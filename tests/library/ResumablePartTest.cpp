#include "support/LocalFileWriter.h"

#include "tests/library/ForeignParts.h"
#include "tests/library/Helpers.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

namespace brevint::test {
namespace {

namespace fs = std::filesystem;
constexpr auto kResumable = LocalFileWriter::Part::Resumable;

struct ResumablePart : testing::Test {
    fs::path At(const char* name) const { return folder.Folder() / name; }
    std::string Read(const fs::path& path) const { return ReadFile(path.wstring()); }

    /// Keeps a part and a record. Returns the path of the one with that ending.
    fs::path Leave(std::string_view ending) const {
        LocalFileWriter writer;
        EXPECT_FALSE(writer.Open(target, kResumable));
        EXPECT_FALSE(writer.Write("before"));
        EXPECT_FALSE(writer.WriteRecord("older"));
        EXPECT_FALSE(writer.WriteRecord("record"));
        writer.Keep();
        fs::path found;
        for (const auto& entry : fs::directory_iterator(folder.Folder())) {
            found = entry.path().extension() == ending ? entry.path() : found;
        }
        return found;
    }

    const TempFolder folder;
    const fs::path target = At("target");
};

TEST_F(ResumablePart, GoesOnWhereAnotherWriterStopped) {
    const auto usual = fs::status(FilePath(WriteFile(At("usual").wstring(), ""))).permissions();
    for (const std::string content : {"new", "newer"}) {
        Leave(".part");
        LocalFileWriter writer;
        ASSERT_FALSE(writer.Open(target, kResumable));
        EXPECT_EQ(writer.Size(), 6U);
        EXPECT_EQ(writer.ReadRecord(), "record");
        EXPECT_EQ(writer.Truncate(7), std::errc::invalid_argument);
        EXPECT_FALSE(writer.Write("!"));
        EXPECT_FALSE(writer.Truncate(4));
        EXPECT_EQ(writer.Size(), 4U);
        EXPECT_FALSE(writer.Write(content));
        EXPECT_FALSE(writer.Finish(content == "newer"));
        EXPECT_EQ(Read(target), "befo" + content);
        EXPECT_EQ(fs::status(target).permissions(), usual);
        EXPECT_EQ(std::distance(fs::directory_iterator(folder.Folder()), {}), 2);
    }
}

TEST_F(ResumablePart, BelongsToOneWriterAtATime) {
    LocalFileWriter first;
    LocalFileWriter second;
    ASSERT_FALSE(first.Open(target, kResumable));
    EXPECT_EQ(second.Open(target, kResumable), std::errc::device_or_resource_busy);
    EXPECT_FALSE(second.Open(At("other"), kResumable));
    first.Abandon();
    EXPECT_FALSE(second.Open(target, kResumable));
    second.Abandon();
    EXPECT_TRUE(fs::is_empty(folder.Folder()));
}

TEST_F(ResumablePart, IsBegunAnewUnlessItIsTheUsersAndRecent) {
    std::vector<ForeignPart> cases = ForeignParts();
    cases.push_back({"with another link", [&](const fs::path& part) {
                         fs::create_hard_link(part, At("theirs"));
                     }});
    cases.push_back({"a week old", [](const fs::path& part) {
                         const auto now = fs::file_time_type::clock::now();
                         fs::last_write_time(part, now - std::chrono::hours(169));
                     }});
    for (const auto& [what, make] : cases) {
        SCOPED_TRACE(what);
        make(Leave(".part"));
        LocalFileWriter writer;
        ASSERT_FALSE(writer.Open(target, kResumable));
        EXPECT_EQ(writer.Size(), 0U);
        EXPECT_EQ(writer.ReadRecord(), "");
        EXPECT_FALSE(writer.Write("after"));
        EXPECT_FALSE(writer.Finish(false));
        EXPECT_EQ(Read(target), "after");
        EXPECT_TRUE(!fs::exists(At("theirs")) || Read(At("theirs")) == "before");
        fs::remove(At("theirs"));
    }
}

TEST_F(ResumablePart, ReadsNoRecordButItsOwn) {
    fs::create_hard_link(Leave(".record"), At("theirs"));
    LocalFileWriter writer;
    ASSERT_FALSE(writer.Open(target, kResumable));
    EXPECT_EQ(writer.ReadRecord(), "");
    EXPECT_FALSE(writer.WriteRecord("new"));
    EXPECT_EQ(writer.WriteRecord(std::string(65'537, 'x')), std::errc::file_too_large);
    EXPECT_EQ(writer.ReadRecord(), "new");
    EXPECT_EQ(Read(At("theirs")), "record");
}

} // namespace
} // namespace brevint::test
