#include "brevint/DownloadFileResponse.h"
#include "brevint/ErrorCodes.h"
#include "brevint/LocalResponse.h"
#include "requests/UploadFileRequestInfo.h"
#include "support/Files.h"

#include "tests/library/Helpers.h"
#include "tests/support/Environment.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace brevint::test {
namespace {

/// The code of a download to that destination.
double DownloadTo(const std::wstring& path, std::string_view content = "content") {
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
    const std::pair<std::wstring, double> cases[] = {
        {pipe, ErrorCode::DownloadWriteFailed},
        {L"/dev/full", ErrorCode::DownloadWriteFailed},
        {L"/dev/null", ErrorCode::Success},
    };
    for (const auto& [path, code] : cases) {
        EXPECT_EQ(DownloadTo(path), code);
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
        EXPECT_EQ(DownloadTo(folder.Path(destination)), ErrorCode::DownloadWriteFailed);
    }
    EXPECT_EQ(fs::status(target).permissions(), readOnly);
    EXPECT_EQ(fs::status(subfolder).permissions(), readOnly);
    EXPECT_TRUE(fs::is_symlink(link));
    EXPECT_EQ(ReadFile(folder.Path(L"target")), "before");
}

/// Makes every file of this process end at a size, as a full disk does.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t size) {
        getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit limit = {size, m_before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit() {
        setrlimit(RLIMIT_FSIZE, &m_before);
        std::signal(SIGXFSZ, m_handler);
    }

private:
    rlimit m_before{};
    void (*m_handler)(int) = std::signal(SIGXFSZ, SIG_IGN);
};

TEST(SpecialFiles, ThatEndTooEarlyFailTheDownload) {
    const TempFolder folder;
    // Small enough to be buffered until the file is closed, and too large for that.
    for (const std::size_t length : {std::size_t{200}, std::size_t{1'000'000}}) {
        {
            const FileSizeLimit limit(100);
            EXPECT_EQ(DownloadTo(folder.Path(L"file"), std::string(length, 'x')),
                      ErrorCode::DownloadWriteFailed);
        }
        EXPECT_EQ(ReadFile(folder.Path(L"file")), std::string(100, 'x'));
    }
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

/// Takes this process's privileges away, if it has any, as long as it lives.
class Unprivileged {
public:
    Unprivileged() { static_cast<void>(seteuid(m_before == 0 ? 65534 : m_before)); }
    ~Unprivileged() { static_cast<void>(seteuid(m_before)); }

private:
    const uid_t m_before = geteuid();
};

TEST(SpecialFiles, ThatTheUserMayNotTouchAreLeftAlone) {
    const TempFolder folder;
    const std::wstring kept = WriteFile(folder.Path(L"kept"), "before");
    namespace fs = std::filesystem;
    fs::permissions(FilePath(kept), fs::perms::none);
    fs::permissions(folder.Folder(), fs::perms::owner_read | fs::perms::owner_exec |
                                         fs::perms::others_read | fs::perms::others_exec);
    {
        const Unprivileged user;
        EXPECT_EQ(Upload(kept), "");
        for (const std::wstring& path : {kept, folder.Path(L"new")}) {
            EXPECT_EQ(DownloadTo(path), ErrorCode::DownloadWriteFailed);
        }
    }
    fs::permissions(folder.Folder(), fs::perms::owner_all);
    fs::permissions(FilePath(kept), fs::perms::owner_read);
    EXPECT_EQ(ReadFile(kept), "before");
    EXPECT_FALSE(fs::exists(FilePath(folder.Path(L"new"))));
}

} // namespace
} // namespace brevint::test
