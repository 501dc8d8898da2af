#include "cli/session/TemporaryFile.h"

#include "cli/output/Failure.h"
#include "cli/output/Paths.h"
#include "support/LocalFileWriter.h"

#include <system_error>

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
