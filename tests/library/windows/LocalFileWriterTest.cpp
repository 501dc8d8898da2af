// What only Windows has: access lists of its own, and devices by name in every folder.

#include "support/LocalFileWriter.h"

#include "tests/library/Helpers.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <sddl.h>

namespace brevint::test {
namespace {

using Part = LocalFileWriter::Part;

std::error_code WriteTo(const std::filesystem::path& path, Part part = Part::Temporary) {
    LocalFileWriter writer;
    std::error_code reason = writer.Open(path, part);
    reason = reason ? reason : writer.Write("after");
    return reason ? reason : writer.Finish(true);
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

void OpenToEverybody(const std::filesystem::path& path) {
    PSECURITY_DESCRIPTOR open = nullptr;
    ASSERT_TRUE(ConvertStringSecurityDescriptorToSecurityDescriptorW(
        L"D:P(A;;FA;;;WD)", SDDL_REVISION_1, &open, nullptr));
    ASSERT_TRUE(SetFileSecurityW(path.c_str(), DACL_SECURITY_INFORMATION, open));
    LocalFree(open);
}

TEST(WindowsFileWriter, KeepsTheAccessList) {
    const TempFolder folder;
    const std::filesystem::path target = FilePath(WriteFile(folder.Path(L"target"), "before"));
    const std::wstring usual = AccessList(target);
    OpenToEverybody(target);
    const std::wstring before = AccessList(target);
    ASSERT_NE(before, usual);
    for (const Part part : {Part::Temporary, Part::Resumable}) {
        EXPECT_FALSE(WriteTo(target, part));
        EXPECT_EQ(AccessList(target), before);
        EXPECT_EQ(ReadFile(target.wstring()), "after");
    }
    EXPECT_FALSE(WriteTo(folder.Folder() / "new", Part::Resumable));
    EXPECT_EQ(AccessList(folder.Folder() / "new"), usual);
}

TEST(WindowsFileWriter, GoesOnWithAPartUnlessItIsEverybodys) {
    const TempFolder folder;
    const std::filesystem::path target = FilePath(WriteFile(folder.Path(L"target"), "before"));
    LocalFileWriter writer;
    // The old file's access list opens a part to everybody when it is about to be finished.
    OpenToEverybody(target);
    ASSERT_FALSE(writer.Open(target, Part::Resumable));
    ASSERT_FALSE(writer.Write("after"));
    const auto finishWhileHeld = [&] {
        const std::ifstream held(target);
        return writer.Finish(false);
    };
    EXPECT_TRUE(finishWhileHeld());
    writer.Keep();
    ASSERT_FALSE(writer.Open(target, Part::Resumable));
    EXPECT_EQ(writer.Size(), 5U);
    writer.Keep();
    OpenToEverybody(FindFile(folder.Folder(), ".part"));
    ASSERT_FALSE(writer.Open(target, Part::Resumable));
    EXPECT_EQ(writer.Size(), 0U);
    ASSERT_FALSE(writer.Write("after"));
    EXPECT_TRUE(finishWhileHeld());
    EXPECT_FALSE(writer.Finish(false));
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
