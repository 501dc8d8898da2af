#include "cli/TemporaryFile.h"

#include "cli/Failure.h"
#include "cli/Utf8.h"
#include "support/LocalFileWriter.h"

namespace brevint::cli {

TemporaryFile::TemporaryFile(const std::filesystem::path& folder)
    : path_(folder / LocalFileWriter::PartName()) {}

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
