// What only Windows has: access lists of its own, and devices by name in every folder.

#include "support/LocalFileWriter.h"

#include "tests/library/Helpers.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <sddl.h>

namespace brevint::test {
namespace {

std::error_code WriteTo(const std::filesystem::path& path) {
    LocalFileWriter writer;
    std::error_code reason = writer.Open(path);
    reason = reason ? reason : writer.Write("after");
    return reason ? reason : writer.Finish();
}

/// The file's access list, as text.
std::wstring AccessList(const std::filesystem::path& path) {
    DWORD size = 0;
    GetFileSecurityW(path.c_str(), DACL_SECURITY_INFORMATION, nullptr, 0, &size);
    std::vector<char> descriptor(size);
    LPWSTR text = nullptr;
    if (!GetFileSecurityW(path.c_str(), DACL_SECURITY_INFORMATION, descriptor.data(), size,
                          &size) ||
        !ConvertSecurityDescriptorToStringSecurityDescriptorW(
            descriptor.data(), SDDL_REVISION_1, DACL_SECURITY_INFORMATION, &text, nullptr)) {
        return {};
    }
    const std::wstring list = text;
    LocalFree(text);
    return list;
}

TEST(WindowsFileWriter, KeepsTheAccessList) {
    const TempFolder folder;
    const std::filesystem::path target = FilePath(WriteFile(folder.Path(L"target"), "before"));
    const std::wstring usual = AccessList(target);
    PSECURITY_DESCRIPTOR open = nullptr;
    ASSERT_TRUE(ConvertStringSecurityDescriptorToSecurityDescriptorW(
        L"D:P(A;;FA;;;WD)", SDDL_REVISION_1, &open, nullptr));
    ASSERT_TRUE(SetFileSecurityW(target.c_str(), DACL_SECURITY_INFORMATION, open));
    LocalFree(open);
    const std::wstring before = AccessList(target);
    ASSERT_NE(before, usual);
    EXPECT_FALSE(WriteTo(target));
    EXPECT_EQ(AccessList(target), before);
    EXPECT_EQ(ReadFile(target.wstring()), "after");
}

TEST(WindowsFileWriter, WritesToDevicesThemselves) {
    const TempFolder folder;
    EXPECT_FALSE(WriteTo("NUL"));
    EXPECT_FALSE(WriteTo(folder.Folder() / "NUL"));
    EXPECT_TRUE(std::filesystem::is_empty(folder.Folder()));
}

} // namespace
} // namespace brevint::test
