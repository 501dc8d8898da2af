#include "brevint/DownloadFileResponse.h"
#include "brevint/ErrorCodes.h"
#include "brevint/LocalResponse.h"
#include "requests/UploadFileRequestInfo.h"
#include "support/Files.h"

#include "tests/library/Helpers.h"
#include "tests/support/Environment.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <sys/stat.h>

namespace brevint::test {
namespace {

/// The code of a download to that destination.
double DownloadTo(const std::wstring& path, std::string_view content) {
    CDownloadFileResponse response;
    response.SetFileDestination(path);
    Fill(response, content);
    return response.GetErrorCode();
}

TEST(SpecialFiles, AreNotWaitedFor) {
    const TempFolder folder;
    const std::wstring pipe = folder.Path(L"pipe");
    ASSERT_EQ(mkfifo(FilePath(pipe).c_str(), 0600), 0);
    std::uint64_t size = 0;
    EXPECT_EQ(BaseHlpr::OpenRegularFile(pipe, size), nullptr);
    // Small enough to be buffered until the file is closed, and too large for that.
    for (const std::string& content : {std::string("x"), std::string(1'000'000, 'x')}) {
        EXPECT_EQ(DownloadTo(pipe, content), ErrorCode::DownloadWriteFailed);
        EXPECT_EQ(DownloadTo(L"/dev/full", content), ErrorCode::DownloadWriteFailed);
        EXPECT_EQ(DownloadTo(L"/dev/null", content), ErrorCode::Success);
    }
}

TEST(SpecialFiles, OnlyTheDestinationIsTouched) {
    namespace fs = std::filesystem;
    const TempFolder folder;
    const fs::path target = FilePath(WriteFile(folder.Path(L"target"), "before"));
    const fs::path link = folder.Folder() / "link";
    const fs::path subfolder = folder.Folder() / "subfolder";
    fs::create_symlink(target, link);
    fs::create_directory(subfolder);
    const fs::perms readOnly = fs::perms::owner_read | fs::perms::owner_exec;
    fs::permissions(target, readOnly);
    fs::permissions(subfolder, readOnly);
    for (const wchar_t* destination : {L"link", L"subfolder"}) {
        EXPECT_EQ(DownloadTo(folder.Path(destination), "x"), ErrorCode::DownloadWriteFailed);
    }
    EXPECT_EQ(fs::status(target).permissions(), readOnly);
    EXPECT_EQ(fs::status(subfolder).permissions(), readOnly);
    EXPECT_TRUE(fs::is_symlink(link));
    EXPECT_EQ(ReadFile(folder.Path(L"target")), "before");
}

std::string Upload(const std::wstring& path) {
    const CUploadFileRequestInfo info(L"http://h", L"parent", path);
    return {info.GetUploadData().begin(), info.GetUploadData().end()};
}

// The kernel tells sizes for these files that their contents do not have: more, and nothing.
TEST(SpecialFiles, ThatShrinkOrGrowWhileTheyAreReadAreSentInTheSizeTheyHad) {
    for (const std::wstring path : {L"/sys/devices/system/cpu/online", L"/proc/self/status"}) {
        std::string content = ReadFile(path);
        const auto size = std::filesystem::file_size(FilePath(path));
        ASSERT_NE(content.size(), size);
        content.resize(size);
        EXPECT_NE(Upload(path).find("\r\n\r\n" + content + "\r\n--"), std::string::npos);
    }
}

TEST(SpecialFiles, ThatEndTooEarlyAreNoStoredReply) {
    const TempFolder folder;
    std::filesystem::create_symlink("/sys/devices/system/cpu/online", folder.Folder() / "Stored");
    SetVariable("BREVINT_LOCAL_RESPONSES", folder.Folder().string());
    EXPECT_EQ(CLocalResponse(L"Stored").GetErrorCode(), 1102);
    ClearVariable("BREVINT_LOCAL_RESPONSES");
}

} // namespace
} // namespace brevint::test
