#include "service/ReferenceService.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <process.h>
#include <string>

namespace brevint::test {
namespace {

TEST(MsvcProgram, UsesTheLibraryThroughItsImportLibrary) {
    service::ReferenceService service({.patternFiles = {{"Big.bin", 3'000'001}}});
    service.Start();
    const TempFolder folder;
    const auto program = std::filesystem::path(_wpgmptr).replace_filename(L"MsvcProgram.exe");
    const std::string url = service.Url();
    EXPECT_EQ(_wspawnl(_P_WAIT, program.c_str(), program.c_str(),
                       std::wstring(url.begin(), url.end()).c_str(),
                       folder.Folder().generic_wstring().c_str(), nullptr),
              0);
    EXPECT_EQ(std::filesystem::file_size(folder.Folder() / "Big.bin"), 3'000'001U);
}

} // namespace
} // namespace brevint::test
