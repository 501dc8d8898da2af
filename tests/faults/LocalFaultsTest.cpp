#include "brevint/brevint.h"
#include "tests/library/Helpers.h"
#include "tests/support/AwaitComplete.h"
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

TEST_F(LocalFaults, DestinationThatDisappearsFailsTheDownload) {
    server.On("*").Head(200, {{"Content-Length", "6"}}).Send("abc").Wait("go").Send("def");
    const auto place = FilePath(folder.Path(L"place"));
    std::filesystem::create_directory(place);
    const std::unique_ptr<IDownloadFileResponse> response(
        proxy.DownloadFile(server.Url(""), L"id", folder.Path(L"place/file")));
    ASSERT_TRUE(server.AwaitArrivalAt("go"));
    std::filesystem::remove(place);
    server.Open("go");
    ASSERT_TRUE(AwaitComplete(*response));
    EXPECT_EQ(response->GetErrorCode(), 1302);
    EXPECT_FALSE(std::filesystem::exists(place));
}

TEST_F(LocalFaults, SourceLargerThanMemoryIsNotSent) {
    server.On("*").Reply(200, {}, "<ResponseData><Message>No file.</Message></ResponseData>");
    const auto source = WriteFile(folder.Path(L"source"), "x");
    for (const std::uintmax_t size : {std::uintmax_t{5} << 30, std::uintmax_t{2'000'000}}) {
        std::filesystem::resize_file(FilePath(source), size); // sparse
        const MemoryLimit limit(1'000'000);
        const std::unique_ptr<CUploadFileResponse> response(
            proxy.UploadFile(server.Url(""), L"id", source));
        EXPECT_FALSE(response->GetSucceeded());
        EXPECT_EQ(server.Requests().back().body, "");
    }
}

} // namespace
} // namespace brevint::test
