#include "cli/TemporaryFile.h"

#include "cli/Failure.h"
#include "cli/Utf8.h"
#include "support/LocalFileWriter.h"

namespace brevint::cli {

TemporaryFile::TemporaryFile(const std::filesystem::path& folder)
    : m_path(folder / LocalFileWriter::PartName()) {}

TemporaryFile::~TemporaryFile() {
    std::error_code ignored;
    std::filesystem::remove(m_path, ignored);
}

void TemporaryFile::MoveTo(const std::filesystem::path& target) {
    std::error_code reason;
    std::filesystem::rename(m_path, target, reason);
    if (reason) {
        throw LocalFailure("\"" + PathToUtf8(target) + "\" cannot be replaced", reason);
    }
}

} // namespace brevint::cli
