#include "support/linux/PartFile.h"

#include "support/PartFileRules.h"
#include "support/linux/FileCalls.h"

#include <algorithm>
#include <ctime>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>

namespace {

// Never follows a link, and never waits for the other end of a pipe.
constexpr int kCarefully = O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
constexpr mode_t kUserOnly = S_IRUSR | S_IWUSR;

/// Whether it is a plain file that only the user can have written, under this name alone.
bool IsUsersOwn(int file) {
    struct stat found {};
    return fstat(file, &found) == 0 && S_ISREG(found.st_mode) && found.st_uid == geteuid() &&
           found.st_nlink == 1 && (found.st_mode & (S_IWGRP | S_IWOTH)) == 0;
}

} // namespace

std::error_code PartFile::OpenTemporary(int folder, mode_t mode) {
    m_folder = folder;
    m_name = PartFileRules::UniqueStem() + PartFileRules::kPartEnding;
    return Make(mode);
}

std::error_code PartFile::OpenResumable(int folder, std::string_view destination, mode_t mode) {
    m_folder = folder;
    const std::string stem = PartFileRules::StemFor(destination);
    m_name = stem + PartFileRules::kPartEnding;
    m_record = stem + PartFileRules::kRecordEnding;
    // Another writer may make the part, or finish it and so rename it, just before it is locked.
    for (int attempt = 0; attempt < 2; ++attempt) {
        const std::error_code reason = FindOrMake(mode);
        if (reason == std::errc::file_exists) {
            continue;
        }
        if (reason) {
            return reason;
        }
        if (flock(m_file.Get(), LOCK_EX | LOCK_NB) != 0) {
            return FileError(errno == EWOULDBLOCK ? EBUSY : errno);
        }
        if (IsInPlace()) {
            return TakeOver();
        }
    }
    return FileError(EBUSY);
}

std::error_code PartFile::Make(mode_t mode) {
    m_file = Descriptor(openat(m_folder, m_name.c_str(),
                               O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode));
    return m_file ? std::error_code() : FileError();
}

/// Opens the part that is there. What is not the user's own gives way to a new one.
std::error_code PartFile::FindOrMake(mode_t mode) {
    m_file = Descriptor(openat(m_folder, m_name.c_str(), O_WRONLY | kCarefully));
    const int error = m_file ? 0 : errno;
    m_firstMode.reset();
    if (m_file && IsUsersOwn(m_file.Get())) {
        return {};
    }
    // Links, pipes without a reader and files of others cannot be opened.
    const bool isForeign = m_file || error == ELOOP || error == ENXIO || error == EACCES;
    if (!isForeign && error != ENOENT) {
        return FileError(error);
    }
    if (isForeign && unlinkat(m_folder, m_name.c_str(), 0) != 0 && errno != ENOENT) {
        return FileError();
    }
    if (const std::error_code reason = Make(mode); !m_file) {
        return reason;
    }
    struct stat made {};
    if (fstat(m_file.Get(), &made) != 0) {
        return FileError();
    }
    m_firstMode = made.st_mode & 0777;
    Protect();
    return {};
}

/// Goes on after what is there, or begins anew.
std::error_code PartFile::TakeOver() {
    struct stat found {};
    if (fstat(m_file.Get(), &found) != 0) {
        return FileError();
    }
    const bool isStale = std::time(nullptr) - found.st_mtime > PartFileRules::kLongestRest.count();
    if (isStale && ftruncate(m_file.Get(), 0) != 0) {
        return FileError();
    }
    const off_t end = lseek(m_file.Get(), 0, SEEK_END);
    if (end < 0) {
        return FileError();
    }
    m_found = static_cast<std::uint64_t>(end);
    m_mayHaveRecord = true;
    if (m_found == 0) {
        RemoveRecord();
    }
    return {};
}

/// Whether its name still stands for the file that is open.
bool PartFile::IsInPlace() const {
    struct stat named {};
    struct stat opened {};
    return fstatat(m_folder, m_name.c_str(), &named, AT_SYMLINK_NOFOLLOW) == 0 &&
           fstat(m_file.Get(), &opened) == 0 && IsSameFile(named, opened);
}

std::error_code PartFile::Truncate(std::uint64_t size) {
    struct stat now {};
    if (fstat(m_file.Get(), &now) != 0) {
        return FileError();
    }
    if (size > static_cast<std::uint64_t>(now.st_size)) {
        return FileError(EINVAL);
    }
    const auto end = static_cast<off_t>(size);
    if (ftruncate(m_file.Get(), end) != 0 || lseek(m_file.Get(), end, SEEK_SET) != end) {
        return FileError();
    }
    m_found = std::min(m_found, size);
    if (size == 0) {
        RemoveRecord();
    }
    return {};
}

std::string PartFile::ReadRecord() const {
    if (!m_mayHaveRecord) {
        return {};
    }
    const Descriptor file(openat(m_folder, m_record.c_str(), O_RDONLY | kCarefully));
    if (!file || !IsUsersOwn(file.Get())) {
        return {};
    }
    std::string record(PartFileRules::kLongestRecord + 1, '\0');
    std::size_t size = 0;
    for (;;) {
        const ssize_t count = read(file.Get(), record.data() + size, record.size() - size);
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count == 0 && size < record.size()) {
            record.resize(size);
            return record;
        }
        if (count <= 0) {
            return {};
        }
        size += static_cast<std::size_t>(count);
    }
}

std::error_code PartFile::WriteRecord(std::string_view record) {
    PartFile next;
    m_mayHaveRecord = true;
    std::error_code reason = next.OpenTemporary(m_folder, kUserOnly);
    if (next.IsOpen()) {
        reason = WriteAll(next.Get(), record);
        reason = reason ? reason : next.MoveTo(m_record, false);
        if (reason) {
            next.Remove();
        }
    }
    return reason;
}

std::error_code PartFile::TakeUsualMode() const {
    if (m_firstMode) {
        return fchmod(Get(), *m_firstMode) == 0 ? std::error_code() : FileError();
    }
    PartFile fresh;
    std::error_code reason = fresh.OpenTemporary(m_folder, 0666);
    if (fresh.IsOpen()) {
        struct stat usual {};
        if (fstat(fresh.Get(), &usual) != 0 || fchmod(Get(), usual.st_mode & 0777) != 0) {
            reason = FileError();
        }
        fresh.Remove();
    }
    return reason;
}

std::error_code PartFile::MoveTo(const std::string& name, bool durable) {
    if (durable && fsync(m_file.Get()) != 0) {
        return FileError();
    }
    if (const std::error_code reason = LateWriteError(m_file.Get())) {
        return reason;
    }
    if (!IsInPlace()) {
        return FileError(EBUSY);
    }
    if (renameat(m_folder, m_name.c_str(), m_folder, name.c_str()) != 0) {
        return FileError();
    }
    RemoveRecord();
    return {};
}

void PartFile::Remove() noexcept {
    if (IsInPlace()) {
        RemoveRecord();
        unlinkat(m_folder, m_name.c_str(), 0);
    }
}

void PartFile::RemoveRecord() noexcept {
    if (std::exchange(m_mayHaveRecord, false)) {
        unlinkat(m_folder, m_record.c_str(), 0);
    }
}

void PartFile::Protect() const noexcept {
    static_cast<void>(fchmod(m_file.Get(), kUserOnly));
}
