#include "tests/support/ScriptedServer.h"
#include "tests/support/TempFolder.h"
#include "tests/transfers/Group.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace brevint::test {
namespace {

namespace fs = std::filesystem;

TEST(LinuxFolder, IsNeitherReadNorWrittenThroughLinks) {
    ScriptedServer server;
    const std::string items =
        "<Item><UniqueId>1</UniqueId><Name>folder</Name><ItemType>0</ItemType></Item>"
        "<Item><UniqueId>2</UniqueId><Name>file</Name><ItemType>1</ItemType>"
        "<Data><Size>2</Size></Data></Item>";
    server.On("/Repository/Items/root/Items")
        .Reply(200, {}, "<ResponseData>" + items + "</ResponseData>");
    server.On("/Repository/Items/empty/Items").Reply(200, {}, "<ResponseData/>");
    const TempFolder folder;
    const fs::path outside = folder.Folder() / "outside";
    const fs::path inside = folder.Folder() / "inside";
    fs::create_directory(outside);
    fs::create_directory(inside);
    Store(outside / "file", "kept");
    fs::create_directory_symlink(outside, inside / "folder");
    fs::create_symlink(outside / "file", inside / "file");
    const Queue queue = MakeQueue(Narrow(server.Url("/")));
    const GroupPtr download = Start(brevint_queue_download_folder, queue, "root", inside,
                                    Options(BREVINT_EXISTING_REPLACE));
    EXPECT_EQ(Outcome(download).failure, BREVINT_FAILURE_EXISTS);
    EXPECT_EQ(Contents(outside / "file"), "kept");

    ASSERT_EQ(mkfifo((inside / "pipe").c_str(), 0600), 0);
    for (const char* name : {"a\"b", "a\nb", "\xFF", "A", "a"}) {
        Store(inside / name, "x");
    }
    const GroupPtr upload = Start(brevint_queue_upload_folder, queue, "empty", inside);
    EXPECT_EQ(Outcome(upload).state, BREVINT_TRANSFER_FAILED);
    for (const auto& [path, entry] : Entries(upload)) {
        EXPECT_EQ(entry.action, path == "A" ? BREVINT_ACTION_TRANSFER : BREVINT_ACTION_REFUSE)
            << path;
    }
    EXPECT_EQ(Progress(upload).entry_count, 8U);
}

} // namespace
} // namespace brevint::test
