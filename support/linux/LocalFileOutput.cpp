#include "support/linux/LocalFileOutput.h"

#include "support/linux/FileCalls.h"

#include <fcntl.h>

namespace fs = std::filesystem;

std::error_code LocalFileOutput::Open(const fs::path& destination, LocalFileWriter::Part kind) {
    m_replaces = stat(destination.c_str(), &m_old) == 0;
    if (!m_replaces && errno != ENOENT) {
        return FileError();
    }
    if (!destination.has_filename() || (m_replaces && S_ISDIR(m_old.st_mode))) {
        return FileError(EISDIR);
    }
    if (const std::error_code reason = m_place.Follow(destination)) {
        return reason;
    }
    if (m_place.isStream || (m_replaces && !S_ISREG(m_old.st_mode))) {
        return OpenItself(destination);
    }
    // What replaces a file gets that one's permissions at the end, and has no more until then.
    const mode_t mode = m_replaces ? S_IRUSR | S_IWUSR : 0666;
    return kind == LocalFileWriter::Part::Resumable
               ? m_part.OpenResumable(m_place.folder.Get(), m_place.name, mode)
               : m_part.OpenTemporary(m_place.folder.Get(), mode);
}

/// Opens what is there, provided that it is still what was looked at.
std::error_code LocalFileOutput::OpenItself(const fs::path& destination) {
    int number = -1;
    do {
        number = open(destination.c_str(), O_WRONLY | O_NOCTTY | O_CLOEXEC);
    } while (number < 0 && errno == EINTR);
    if (number < 0) {
        return FileError();
    }
    m_itself = Descriptor(number);
    struct stat opened {};
    if (fstat(number, &opened) != 0) {
        return FileError();
    }
    if (!IsSameFile(opened, m_old)) {
        return FileError(EBUSY);
    }
    return S_ISREG(opened.st_mode) && ftruncate(m_itself.Get(), 0) != 0 ? FileError()
                                                                        : std::error_code();
}

std::error_code LocalFileOutput::Write(std::string_view bytes) {
    return WriteAll(IsDirect() ? m_itself.Get() : m_part.Get(), bytes);
}

std::error_code LocalFileOutput::Finish(bool durable) {
    if (IsDirect()) {
        return LateWriteError(m_itself.Get());
    }
    if (m_replaces && !m_place.CopyPermissions(m_old, m_part.Get())) {
        return FileError();
    }
    if (!m_replaces && m_part.IsResumable()) {
        if (const std::error_code reason = m_part.TakeUsualMode()) {
            return reason;
        }
    }
    return m_part.MoveTo(m_place.name, durable);
}
