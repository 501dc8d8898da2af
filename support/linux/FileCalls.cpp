#include "support/linux/FileCalls.h"

#include "support/linux/Descriptor.h"

#include <fcntl.h>

std::error_code WriteAll(int file, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = write(file, bytes.data(), bytes.size());
        if (written >= 0) {
            bytes.remove_prefix(static_cast<std::size_t>(written));
        } else if (errno != EINTR) {
            return FileError();
        }
    }
    return {};
}

std::error_code LateWriteError(int file) {
    Descriptor other(fcntl(file, F_DUPFD_CLOEXEC, 0));
    return other && other.Close() ? std::error_code() : FileError();
}
