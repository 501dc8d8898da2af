#include "brevint/DownloadFileResponse.h"
#include "support/Files.h"

#include "tests/library/Helpers.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <csignal>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>

namespace brevint::test {
namespace {

TEST(SpecialFiles, AreNotWaitedFor) {
    const TempFolder folder;
    const std::wstring pipe = folder.Path(L"pipe");
    ASSERT_EQ(mkfifo(FilePath(pipe).c_str(), 0600), 0);
    std::uint64_t size = 0;
    EXPECT_EQ(BaseHlpr::OpenRegularFile(pipe, size), nullptr);
    for (const std::wstring& path : {pipe, std::wstring(L"/dev/full")}) {
        CDownloadFileResponse response;
        response.SetFileDestination(path);
        Fill(response, "content");
        EXPECT_EQ(response.GetErrorCode(), 1302);
    }
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
        CDownloadFileResponse response;
        response.SetFileDestination(folder.Path(L"file"));
        {
            const FileSizeLimit limit(100);
            Fill(response, std::string(length, 'x'));
        }
        EXPECT_EQ(response.GetErrorCode(), 1302);
        EXPECT_EQ(ReadFile(folder.Path(L"file")), std::string(100, 'x'));
    }
}

} // namespace
} // namespace brevint::test
