#include "tests/cli/ClientFixture.h"

#include <unistd.h>

namespace brevint::test {
namespace {

TEST_F(ClientTest, RefusesAStateFolderOfSomebodyElse) {
    KeepSession("https://host", "a=b");
    const std::filesystem::path folder = SessionFile().parent_path();
    if (geteuid() == 0) {
        ASSERT_EQ(0, chown(folder.c_str(), 65534, 65534));
    } else {
        std::filesystem::remove_all(folder);
        std::filesystem::create_directory_symlink("/", folder);
    }
    const auto result = Run({"ls"});
    EXPECT_EQ(5, result.exitCode);
    EXPECT_NE(std::string::npos, result.error.find("is not one of yours")) << result.error;
}

} // namespace
} // namespace brevint::test
