#include "cli/session/TemporaryFolder.h"

#include "cli/session/PrivateFile.h"
#include "support/LocalFileWriter.h"

#include <system_error>

namespace brevint::cli {

TemporaryFolder::TemporaryFolder() : m_path(StateFolder() / LocalFileWriter::PartName()) {
    CreatePrivateFolder(StateFolder());
    CreatePrivateFolder(m_path);
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
}

} // namespace brevint::cli
