#include "platform/Files.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>

namespace brevint::test {
namespace {

struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

// Opened by wide name, positioned beyond two gigabytes, kept by the read-only attribute, deleted.
TEST(Files, GoThroughTheirLife) {
    constexpr std::int64_t kFar = 5'000'000'000;
    const TempFolder folder;
    const auto name = folder.Path(L"\u00dcberblick \u2014 \u6982\u8981 \U0001F4C4.bin");
    const auto open = [&name](const wchar_t* mode) {
        return std::unique_ptr<std::FILE, FileCloser>(_wfopen(name.c_str(), mode));
    };
    EXPECT_EQ(open(L"rb"), nullptr);
    EXPECT_EQ(GetFileAttributesW(name.c_str()), INVALID_FILE_ATTRIBUTES);
    EXPECT_FALSE(DeleteFileW(name.c_str()));
    EXPECT_EQ(GetLastError(), ERROR_FILE_NOT_FOUND);
    {
        const auto file = open(L"wb");
        ASSERT_NE(file, nullptr);
        EXPECT_EQ(_fseeki64(file.get(), kFar, SEEK_SET), 0);
        EXPECT_EQ(std::fwrite("a\r\n\x1a", 1, 4, file.get()), 4u);
    }
    const auto path = folder.Folder() / u8"\u00dcberblick \u2014 \u6982\u8981 \U0001F4C4.bin";
    EXPECT_EQ(std::filesystem::file_size(path), kFar + 4u);
    EXPECT_TRUE(SetFileAttributesW(name.c_str(), FILE_ATTRIBUTE_READONLY));
    EXPECT_EQ(GetFileAttributesW(name.c_str()) & FILE_ATTRIBUTE_READONLY, FILE_ATTRIBUTE_READONLY);
    EXPECT_FALSE(DeleteFileW(name.c_str()));
    EXPECT_EQ(GetLastError(), ERROR_ACCESS_DENIED);
    {
        const auto file = open(L"rb");
        ASSERT_NE(file, nullptr);
        EXPECT_EQ(_fseeki64(file.get(), -4, SEEK_END), 0);
        EXPECT_EQ(_ftelli64(file.get()), kFar);
        EXPECT_EQ(std::fgetc(file.get()), 'a');
    }
    EXPECT_TRUE(SetFileAttributesW(name.c_str(), FILE_ATTRIBUTE_NORMAL));
    EXPECT_TRUE(DeleteFileW(name.c_str()));
    EXPECT_FALSE(std::filesystem::exists(path));
}

} // namespace
} // namespace brevint::test
