#include "cli/LocalFile.h"

#include "cli/Failure.h"
#include "cli/Utf8.h"

#include <cerrno>
#include <fstream>

namespace brevint::cli {

std::wstring CheckLocalFile(const std::string& path) {
    const std::filesystem::path file = ToPath(path);
    std::error_code reason;
    const std::filesystem::file_status status = std::filesystem::status(file, reason);
    if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status)) {
        throw Failure(ExitCode::LocalFile, "\"" + path + "\" is not a file.");
    }
    if (!std::ifstream(file, std::ios::binary)) {
        throw LocalFailure("\"" + path + "\" cannot be read",
                           std::error_code(errno, std::generic_category()));
    }
    return ToWide(path);
}

} // namespace brevint::cli
