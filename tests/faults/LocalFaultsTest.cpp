#include "brevint/brevint.h"
#include "tests/library/Helpers.h"
#include "tests/support/AwaitComplete.h"
#include "tests/support/Environment.h"
#include "tests/support/MemoryLimit.h"
#include "tests/support/ResponseKinds.h"
#include "tests/support/ScriptedServer.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>

namespace brevint::test {
namespace {

struct LocalFaults : testing::Test {
    const TempFolder folder;
    ScriptedServer server;
    WebRequestFactory factory;
    CRepositoryProxy proxy{&factory};
};

TEST_F(LocalFaults, FileLargerThanMemoryIsNeitherSentNorTakenForAReply) {
    server.On("*").Reply(200, {}, "<ResponseData><Message>No file.</Message></ResponseData>");
    const auto source = WriteFile(folder.Path(L"DownloadFileResponse"), "x");
    for (const std::uintmax_t size : {std::uintmax_t{5} << 30, std::uintmax_t{2'000'000}}) {
        std::filesystem::resize_file(FilePath(source), size); // sparse
        SetVariable("BREVINT_LOCAL_RESPONSES", folder.Folder().string());
        const MemoryLimit limit(1'000'000);
        const std::unique_ptr<CUploadFileResponse> response(
            proxy.UploadFile(server.Url(""), L"id", source));
        EXPECT_FALSE(response->GetSucceeded());
        EXPECT_EQ(server.Requests().back().body, "");
        const std::unique_ptr<IDownloadFileResponse> stored(
            proxy.DownloadFile(L"", L"id", folder.Path(L"file")));
        ClearVariable("BREVINT_LOCAL_RESPONSES");
        EXPECT_TRUE(stored && stored->IsComplete() && stored->GetErrorCode() == 1102);
    }
}

// Where memory ends, a reply is an empty one, and of its records none is missing alone.
TEST_F(LocalFaults, ReplyAndItsRecordsAreWholeOrNotThere) {
    const auto bytes =
        Bytes(Document("<Item/><Item><Name>" + std::string(2'000'000, 'x') + "</Name></Item>"));
    for (const ResponseKind& kind : kResponseKinds) {
        SCOPED_TRACE(kind.name);
        const auto empty = kind.make(), unheld = kind.make(), held = kind.make();
        empty->SetServerResponse({}, 500);
        held->SetServerResponse(bytes, 500);
        const MemoryLimit limit(1'000'000);
        unheld->SetServerResponse(bytes, 500);
        EXPECT_EQ(unheld->GetErrorCode(), empty->GetErrorCode());
        EXPECT_EQ(unheld->GetServerResponse(), empty->GetServerResponse());
        EXPECT_EQ(unheld->GetStatusCode(), 500u);
        if (kind.name == "GetFolderContents" || kind.name == "Template") {
            EXPECT_TRUE(held->GetSucceeded());
            EXPECT_EQ(kind.detail(*held), L"");
            EXPECT_EQ(held->GetErrorCode(), ErrorCode::EmptyReply);
        }
        const auto* const file = dynamic_cast<CDownloadFileResponse*>(unheld.get());
        EXPECT_TRUE(!file || file->IsComplete());
    }
}

} // namespace
} // namespace brevint::test
