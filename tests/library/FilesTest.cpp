#include "support/Files.h"
#include "brevint/brevint.h"
#include "requests/OverwriteFileRequestInfo.h"
#include "requests/UploadFileRequestInfo.h"

#include "tests/library/Helpers.h"
#include "tests/support/Environment.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>

namespace brevint::test {
namespace {

constexpr const wchar_t* kForeignName = L"\u00dcberblick \u2014 \u6982\u8981 \U0001d11e.txt";
constexpr const char* kForeignNameUtf8 = "\u00dcberblick \u2014 \u6982\u8981 \U0001d11e.txt";
const std::string kBytes("a\0\r\n\x1a\xff<ResponseData/>", 21);

/// Makes a file one that cannot be written to.
void Protect(const std::wstring& path) {
    std::filesystem::permissions(FilePath(path), std::filesystem::perms::owner_read);
}

struct Files : testing::Test {
    const TempFolder folder;
};

TEST_F(Files, NameIsWhatFollowsTheLastSeparator) {
    const bool both = std::filesystem::path::preferred_separator == '\\';
    EXPECT_EQ(BaseHlpr::ExtractFileName(L"/a/b/"), L"");
    EXPECT_EQ(BaseHlpr::ExtractFileName(L"a\\b/c"), L"c");
    EXPECT_EQ(BaseHlpr::ExtractFileName(L"C:\\a"), both ? L"a" : L"C:\\a");
    EXPECT_EQ(BaseHlpr::ExtractFileName(L"/a\\b/c\\d"), both ? L"d" : L"c\\d");
}

/// Checks the body of both kinds of request that carry a file.
void ExpectBody(const std::wstring& path, const std::string& body) {
    const CUploadFileRequestInfo upload(L"http://h", L"parent", path);
    const COverwriteFileRequestInfo overwrite(L"http://h", L"file", path);
    for (const std::vector<char>& data : {upload.GetUploadData(), overwrite.GetUploadData()}) {
        EXPECT_EQ(std::string(data.begin(), data.end()), body);
    }
}

TEST_F(Files, AreUploadedByteForByte) {
    std::string allBytes;
    for (int i = 0; i < 100'000; ++i) {
        allBytes += static_cast<char>(i);
    }
    const struct {
        const wchar_t* name;
        std::string sentName;
        std::string content;
    } cases[] = {
        {L"empty", "empty", ""},
        {L"bytes.bin", "bytes.bin", allBytes},
        {L"boundary", "boundary", "\r\n-----------------------8cdfaf76df000f9--\r\n"},
        {kForeignName, kForeignNameUtf8, "x"},
        {L"it's; 100%%BOUNDARY%% & more", "it's; 100%%BOUNDARY%% & more", "%%FILENAME%%"},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.name);
        const std::wstring path = WriteFile(folder.Path(test.name), test.content);
        ExpectBody(path, Multipart(test.sentName, test.content));
        EXPECT_TRUE(std::filesystem::remove(FilePath(path))); // closed, so that Windows lets it go
    }
    const std::wstring large = WriteFile(folder.Path(L"large"), "x");
    std::filesystem::resize_file(FilePath(large), (std::uint64_t{1} << 32) - 100); // sparse
    for (const std::wstring& none :
         {std::wstring(), folder.Path(L""), folder.Path(L"missing/file"),
          folder.Path(L"large/file"), std::wstring(L"/dev/zero"), std::wstring(L"NUL"),
          std::wstring{L'a', wchar_t{0xD800}}, large}) {
        SCOPED_TRACE(none);
        ExpectBody(none, "");
    }
}

TEST_F(Files, AreReplacedByDownloadsThoughReadOnly) {
    const std::wstring path = WriteFile(folder.Path(kForeignName), std::string(1000, 'x'));
    Protect(path);
    CDownloadFileResponse response;
    response.SetFileDestination(path);
    EXPECT_FALSE(response.IsComplete());
    Fill(response, kBytes);
    EXPECT_TRUE(response.IsComplete());
    EXPECT_EQ(response.GetErrorCode(), 1101);
    EXPECT_EQ(response.GetServerResponse(), Bytes(kBytes));
    EXPECT_EQ(response.GetServerResponseAsString(), L"");
    EXPECT_EQ(ReadFile(path), kBytes);
    std::filesystem::create_directory(FilePath(folder.Path(L"folder")));
    for (const std::wstring& wrong : {std::wstring(), folder.Path(L"folder"), path + L"/below",
                                      folder.Path(std::wstring(300, L'x'))}) {
        SCOPED_TRACE(wrong);
        CDownloadFileResponse failed;
        failed.SetFileDestination(wrong);
        Fill(failed, "content");
        EXPECT_TRUE(failed.IsComplete());
        EXPECT_EQ(failed.GetErrorCode(), 1302);
    }
}

/// Responses that are stored in a folder, which a variable of the environment names.
struct LocalResponses : Files {
    LocalResponses() { SetVariable(kVariable, folder.Folder().string()); }
    ~LocalResponses() override { ClearVariable(kVariable); }

    /// Downloads to a destination; the response, when it is one that was stored.
    static std::unique_ptr<IDownloadFileResponse> Download(const std::wstring& destination) {
        WebRequestFactory factory;
        CRepositoryProxy proxy(&factory);
        std::unique_ptr<IDownloadFileResponse> response(
            proxy.DownloadFile(L"", L"id", destination));
        return dynamic_cast<CLocalDownloadFileResponse*>(response.get()) ? std::move(response)
                                                                         : nullptr;
    }

    static constexpr const char* kVariable = "BREVINT_LOCAL_RESPONSES";
};

TEST_F(LocalResponses, StandInForDownloads) {
    const std::wstring destination = WriteFile(folder.Path(L"file"), std::string(1000, 'x'));
    Protect(destination);
    EXPECT_EQ(Download(destination), nullptr);
    const std::pair<std::string, double> cases[] = {{kBytes, 1101}, {"", 1102}};
    for (const auto& [content, code] : cases) {
        WriteFile(folder.Path(L"DownloadFileResponse"), content);
        const auto response = Download(destination);
        ASSERT_NE(response, nullptr);
        EXPECT_TRUE(response->IsComplete());
        EXPECT_EQ(response->GetErrorCode(), code);
        EXPECT_EQ(ReadFile(destination), kBytes);
    }
    WriteFile(folder.Path(L"DownloadFileResponse"), kBytes);
    const auto failed = Download(folder.Path(L"missing/file"));
    ASSERT_NE(failed, nullptr);
    EXPECT_EQ(failed->GetErrorCode(), 1302);
    ClearVariable(kVariable);
    EXPECT_EQ(Download(destination), nullptr);
}

} // namespace
} // namespace brevint::test
