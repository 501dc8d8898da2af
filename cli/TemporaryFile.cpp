#include "cli/TemporaryFile.h"

#include "base/Hex.h"
#include "cli/Failure.h"
#include "cli/Utf8.h"

#include <random>
#include <string>

namespace brevint::cli {

namespace {

std::string RandomName() {
    std::random_device random;
    std::string name = ".brevint-";
    for (int i = 0; i < 16; ++i) {
        name += base::kHexDigits[random() % 16];
    }
    return name + ".part";
}

} // namespace

TemporaryFile::TemporaryFile(const std::filesystem::path& folder) : path_(folder / RandomName()) {}

TemporaryFile::~TemporaryFile() {
    std::error_code ignored;
    std::filesystem::remove(path_, ignored);
}

void TemporaryFile::MoveTo(const std::filesystem::path& target) {
    std::error_code reason;
    std::filesystem::rename(path_, target, reason);
    if (reason) {
        throw LocalFailure("\"" + PathToUtf8(target) + "\" cannot be replaced", reason);
    }
}

} // namespace brevint::cli
