#include "service/TemporaryFile.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>

#include <fcntl.h>
#include <unistd.h>

namespace brevint::service {

namespace {

[[noreturn]] void Fail(int error) {
    throw std::system_error(error, std::system_category(), "temporary file");
}

int Number(std::intptr_t file) {
    return static_cast<int>(file);
}

} // namespace

TemporaryFile::TemporaryFile() {
    std::string path = std::filesystem::temp_directory_path() / "brevint-service-XXXXXX";
    m_file = mkostemp(path.data(), O_CLOEXEC);
    if (m_file < 0) {
        Fail(errno);
    }
    unlink(path.c_str());
}

TemporaryFile::~TemporaryFile() {
    close(Number(m_file));
}

void TemporaryFile::Append(std::string_view bytes) const {
    while (!bytes.empty()) {
        const ssize_t count = write(Number(m_file), bytes.data(), bytes.size());
        if (count < 0 && errno != EINTR) {
            Fail(errno);
        }
        bytes.remove_prefix(static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    }
}

void TemporaryFile::Read(std::uint64_t offset, char* target, std::size_t count) const {
    while (count > 0) {
        const ssize_t part = pread(Number(m_file), target, count, static_cast<off_t>(offset));
        if (part == 0 || (part < 0 && errno != EINTR)) {
            Fail(part == 0 ? EIO : errno);
        }
        const auto step = static_cast<std::size_t>(std::max<ssize_t>(part, 0));
        offset += step;
        target += step;
        count -= step;
    }
}

} // namespace brevint::service
