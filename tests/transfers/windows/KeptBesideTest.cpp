#include "tests/support/ScriptedServer.h"
#include "tests/support/TempFolder.h"
#include "tests/transfers/Queue.h"

#include <gtest/gtest.h>

#include <windows.h>

namespace brevint::test {
namespace {

TEST(KeptBeside, TakesItsPlaceOnceAnotherProgramLetsGo) {
    const TempFolder folder;
    const std::filesystem::path destination = folder.Folder() / "file";
    Store(destination, "old");
    ScriptedServer server;
    server.On("/Repository/Files/id").Reply(200, {{"ETag", "\"a\""}}, "new content");
    const Queue queue = MakeQueue(Narrow(server.Url("/")));

    const HANDLE held = CreateFileW(destination.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                    OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    ASSERT_NE(held, INVALID_HANDLE_VALUE);
    const TransferPtr transfer = StartDownload(queue, "id", destination);
    const brevint_outcome outcome = Outcome(transfer);
    EXPECT_EQ(outcome.state, BREVINT_TRANSFER_FAILED);
    EXPECT_EQ(outcome.kept_beside, 1) << outcome.text;
    EXPECT_EQ(brevint_transfer_finish(transfer.get()), 0);
    EXPECT_EQ(Contents(destination), "old");

    CloseHandle(held);
    EXPECT_EQ(brevint_transfer_finish(transfer.get()), 1);
    EXPECT_EQ(Contents(destination), "new content");
    EXPECT_EQ(FileCount(folder.Folder()), 1);
    EXPECT_EQ(server.Requests().size(), 1U);
}

} // namespace
} // namespace brevint::test
