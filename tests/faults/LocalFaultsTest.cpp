#include "brevint/brevint.h"
#include "tests/library/Details.h"
#include "tests/library/Helpers.h"
#include "tests/support/AwaitComplete.h"
#include "tests/support/Environment.h"
#include "tests/support/MemoryLimit.h"
#include "tests/support/ScriptedServer.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>

namespace brevint::test {
namespace {

class LocalFaults : public testing::Test {
protected:
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

/// Checks that where memory ends a reply is an empty one, or that its records are all missing.
template <class Response>
void CheckShortage(const std::string& reply) {
    const auto bytes = Bytes(reply);
    Response unheld, held;
    held.SetServerResponse(bytes, 200);
    EXPECT_EQ(held.GetErrorCode(), 1101);
    const MemoryLimit limit(1'000'000);
    unheld.SetServerResponse(bytes, 500);
    EXPECT_EQ(unheld.GetErrorCode(), 1102);
    EXPECT_EQ(unheld.GetStatusCode(), 500u);
    EXPECT_EQ(Detail(held), L"");
    EXPECT_EQ(held.GetErrorCode(), 1102);
}

TEST_F(LocalFaults, RecordsOfAReplyComeAllOrNotAtAll) {
    const auto items =
        Document("<Item/><Item><Name>" + std::string(2'000'000, 'x') + "</Name></Item>");
    CheckShortage<CGetFolderContentsResponse>(items);
    CheckShortage<CTemplateResponse>(items);
    const auto bytes = Bytes(items);
    const MemoryLimit limit(1'000'000);
    CDownloadFileResponse file;
    file.SetServerResponse(bytes, 200);
    EXPECT_TRUE(file.IsComplete());
    EXPECT_EQ(file.GetErrorCode(), 1102);
}

} // namespace
} // namespace brevint::test
