// What only Linux has: modes, access lists, links, and folders that everybody may write to.

#include "support/LocalFileWriter.h"

#include "tests/library/Helpers.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <functional>

#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace brevint::test {
namespace {

namespace fs = std::filesystem;
using Part = LocalFileWriter::Part;

std::error_code WriteTo(const fs::path& path) {
    LocalFileWriter writer;
    std::error_code reason = writer.Open(path);
    reason = reason ? reason : writer.Write("after");
    return reason ? reason : writer.Finish(true);
}

struct LinuxFileWriter : testing::Test {
    LinuxFileWriter() { Put("target", "before"); }

    fs::path At(const char* name) const { return folder.Folder() / name; }
    void Put(const char* name, std::string_view content) const {
        WriteFile(At(name).wstring(), content);
    }
    std::string Read(const char* name) const { return ReadFile(At(name).wstring()); }

    fs::path FindPart() const { return FindFile(folder.Folder(), ".part"); }

    const TempFolder folder;
};

TEST_F(LinuxFileWriter, KeepsPermissions) {
    const std::pair<mode_t, mode_t> cases[] = {
        {0600, 0600}, {0666, 0666}, {0755, 0755}, {0440, 0640}, {04711, 0711}};
    for (const auto& [before, after] : cases) {
        chmod(At("target").c_str(), before);
        LocalFileWriter writer;
        ASSERT_FALSE(writer.Open(At("target")));
        const fs::perms others = fs::perms::group_all | fs::perms::others_all;
        EXPECT_EQ(fs::status(FindPart()).permissions() & others, fs::perms::none);
        ASSERT_FALSE(writer.Finish(true));
        struct stat file {};
        stat(At("target").c_str(), &file);
        EXPECT_EQ(file.st_mode & 07777, after) << std::oct << before;
    }
}

// Without the list, what its mask allows would be what the group may do.
TEST_F(LinuxFileWriter, KeepsTheAccessList) {
    constexpr const char* kName = "system.posix_acl_access";
    // The kernel's form: user::rw-, user:1:rw-, group::---, mask::rw-, other::---.
    const std::array<std::uint16_t, 22> list = {2,    0,                 //
                                                0x01, 6, 0xFFFF, 0xFFFF, //
                                                0x02, 6, 1,      0,      //
                                                0x04, 0, 0xFFFF, 0xFFFF, //
                                                0x10, 6, 0xFFFF, 0xFFFF, //
                                                0x20, 0, 0xFFFF, 0xFFFF};
    ASSERT_EQ(setxattr(At("target").c_str(), kName, list.data(), sizeof list, 0), 0);
    ASSERT_FALSE(WriteTo(At("target")));
    std::array<std::uint16_t, 22> kept{};
    EXPECT_EQ(getxattr(At("target").c_str(), kName, kept.data(), sizeof kept), sizeof kept);
    EXPECT_EQ(kept, list);
}

TEST_F(LinuxFileWriter, FollowsLinks) {
    fs::create_directory(At("sub"));
    const std::pair<const char*, const char*> cases[] = {
        {"target", "target"}, {"sub/../target", "target"}, {"new", "new"}};
    for (const auto& [leadsTo, file] : cases) {
        fs::create_symlink(leadsTo, At("link"));
        fs::create_symlink("../link", At("sub/link"));
        EXPECT_FALSE(WriteTo(At("sub/link"))) << leadsTo;
        EXPECT_EQ(Read(file), "after") << leadsTo;
        EXPECT_EQ(fs::read_symlink(At("link")), leadsTo);
        for (const char* name : {"link", "sub/link", file}) {
            EXPECT_TRUE(fs::remove(At(name)));
        }
        Put("target", "before");
    }
    fs::create_symlink("circle", At("circle"));
    EXPECT_EQ(WriteTo(At("circle")), std::errc::too_many_symbolic_link_levels);
}

// In a folder that others may write to, the part file is swapped for a link.
TEST_F(LinuxFileWriter, WritesToNoFileButTheOneItMade) {
    Put("theirs", "theirs");
    for (const Part kind : {Part::Temporary, Part::Resumable}) {
        for (const char* destination : {"target", "new"}) {
            LocalFileWriter writer;
            ASSERT_FALSE(writer.Open(At(destination), kind));
            const fs::path part = FindPart();
            fs::remove(part);
            fs::create_symlink("theirs", part);
            EXPECT_FALSE(writer.Write("after"));
            EXPECT_EQ(writer.Finish(true), std::errc::device_or_resource_busy);
            writer.Abandon();
            EXPECT_EQ(Read("theirs"), "theirs");
            EXPECT_TRUE(fs::remove(part));
        }
    }
    EXPECT_EQ(Read("target"), "before");
    EXPECT_EQ(std::distance(fs::directory_iterator(folder.Folder()), {}), 2);
}

TEST_F(LinuxFileWriter, GoesOnWithNothingThatOthersCouldWriteTo) {
    const std::function<void(const fs::path&)> cases[] = {
        [](const fs::path& part) { chmod(part.c_str(), 0620); },
        [](const fs::path& part) { fs::remove(part), mkfifo(part.c_str(), 0600); },
        [&](const fs::path& part) { fs::remove(part), fs::create_symlink("target", part); },
        // Only root can give files away.
        [](const fs::path& part) { chown(part.c_str(), 1, 1) != 0 && fs::remove(part); },
    };
    for (const auto& change : cases) {
        LocalFileWriter writer;
        ASSERT_FALSE(writer.Open(At("new"), Part::Resumable));
        ASSERT_FALSE(writer.Write("theirs"));
        writer.Keep();
        change(FindPart());
        ASSERT_FALSE(writer.Open(At("new"), Part::Resumable)) << &change - cases;
        EXPECT_EQ(writer.Size(), 0U) << &change - cases;
        EXPECT_FALSE(writer.Write("after"));
        EXPECT_FALSE(writer.Finish(false));
        EXPECT_EQ(Read("new"), "after");
    }
    EXPECT_EQ(Read("target"), "before");
}

} // namespace
} // namespace brevint::test
