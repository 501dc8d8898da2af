#include "tests/support/ScriptedServer.h"
#include "tests/support/TempFolder.h"
#include "tests/transfers/Queue.h"

#include <gtest/gtest.h>

namespace brevint::test {
namespace {

namespace fs = std::filesystem;

// The folder is copied in the midst of a download, when nobody could read the part on Windows.
TEST(LinuxResume, GoesOnWithWhatAKilledProgramLeft) {
    constexpr const char* kTarget = "/Repository/Files/id";
    constexpr fs::perms kOthers = fs::perms::group_all | fs::perms::others_all;
    const TempFolder folder;
    const fs::path before = folder.Folder() / "before";
    const fs::path after = folder.Folder() / "after";
    fs::create_directory(before);
    const std::string whole = ScriptedServer::Pattern(600'000);
    ScriptedServer server;
    server.On(kTarget).Reply(200, {{"ETag", "\"a\""}}, whole);
    const Queue queue = MakeQueue(Narrow(server.Url("/")));
    std::uint64_t size = 0;
    Listener listener = [&](brevint_transfer*, const brevint_progress& now) {
        if (size == 0 && now.bytes_done != 0) {
            size = now.bytes_done;
            fs::copy(before, after);
            for (const auto& entry : fs::directory_iterator(before)) {
                EXPECT_EQ(entry.status().permissions() & kOthers, fs::perms::none);
            }
        }
    };
    EXPECT_EQ(
        Outcome(StartDownload(queue, "id", before / "file", BREVINT_UNKNOWN_SIZE, &listener)).state,
        BREVINT_TRANSFER_FINISHED);

    const std::string first = std::to_string(size) + '-';
    server.On(kTarget).Reply(
        206, {{"ETag", "\"a\""}, {"Content-Range", "bytes " + first + "599999/600000"}},
        whole.substr(size));
    const TransferPtr transfer = StartDownload(queue, "id", after / "file");
    EXPECT_EQ(Outcome(transfer).state, BREVINT_TRANSFER_FINISHED) << Outcome(transfer).text;
    ASSERT_EQ(server.RequestsFor(kTarget).size(), 2U);
    EXPECT_EQ(server.RequestsFor(kTarget)[1].Header("Range"), "bytes=" + first);
    EXPECT_EQ(FileCount(after), 1);
    Store(folder.Folder() / "usual", "");
    for (const fs::path& file : {before / "file", after / "file"}) {
        EXPECT_TRUE(Contents(file) == whole) << file;
        EXPECT_EQ(fs::status(file).permissions(),
                  fs::status(folder.Folder() / "usual").permissions());
    }
}

} // namespace
} // namespace brevint::test
