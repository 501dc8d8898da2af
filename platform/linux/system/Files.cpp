#include "platform/linux/system/Files.h"

#include "support/Utf8.h"

#include <cerrno>
#include <fcntl.h>
#include <new>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// Only files can be read-only: what a folder's missing permission stands for is no attribute of the
// folder on Windows, and devices and links are not protected by it there.
bool IsReadOnly(const struct stat& file) {
    return S_ISREG(file.st_mode) && (file.st_mode & S_IWUSR) == 0;
}

DWORD ErrorFromErrno() {
    switch (errno) {
    case ENOENT:
    case ENOTDIR:
    case ENAMETOOLONG: return ERROR_FILE_NOT_FOUND;
    case ENOMEM: return ERROR_NOT_ENOUGH_MEMORY;
    case EACCES:
    case EPERM:
    case EISDIR:
    case EROFS: return ERROR_ACCESS_DENIED;
    default: return ERROR_GEN_FAILURE;
    }
}

BOOL Fail(DWORD error) {
    SetLastError(error);
    return FALSE;
}

// The open(2) flags of an fopen mode, or -1.
int OpenFlags(std::string_view mode) {
    const int access = mode.find('+') != std::string_view::npos ? O_RDWR : O_WRONLY;
    switch (mode.empty() ? '\0' : mode.front()) {
    case 'r': return access == O_RDWR ? O_RDWR : O_RDONLY;
    case 'w': return access | O_CREAT | O_TRUNC;
    case 'a': return access | O_CREAT | O_APPEND;
    default: return -1;
    }
}

// Opens with O_NONBLOCK, so that what has become a pipe meanwhile does not block, and gives the
// descriptor back in blocking mode.
int OpenDescriptor(const char* path, int flags) {
    struct stat file {};
    if (stat(path, &file) == 0) {
        const bool writes = (flags & O_ACCMODE) != O_RDONLY;
        const bool usable =
            writes ? !S_ISFIFO(file.st_mode) && !IsReadOnly(file) : S_ISREG(file.st_mode);
        if (!usable) {
            errno = EACCES;
            return -1;
        }
    }
    const int descriptor = open(path, flags | O_NONBLOCK | O_NOCTTY | O_CLOEXEC, 0666);
    if (descriptor >= 0) {
        fcntl(descriptor, F_SETFL, fcntl(descriptor, F_GETFL) & ~O_NONBLOCK);
    }
    return descriptor;
}

} // namespace

std::FILE* _wfopen(const wchar_t* name, const wchar_t* mode) noexcept try {
    if (name == nullptr || mode == nullptr) {
        errno = EINVAL;
        return nullptr;
    }
    const std::string narrowMode = Utf8::ToNarrow(mode);
    const int flags = OpenFlags(narrowMode);
    if (flags < 0) {
        errno = EINVAL;
        return nullptr;
    }
    const int descriptor = OpenDescriptor(Utf8::ToNarrow(name).c_str(), flags);
    if (descriptor < 0) {
        return nullptr;
    }
    std::FILE* file = fdopen(descriptor, narrowMode.c_str());
    if (file == nullptr) {
        close(descriptor);
    }
    return file;
} catch (const std::bad_alloc&) {
    errno = ENOMEM;
    return nullptr;
}

int _fseeki64(std::FILE* file, std::int64_t offset, int origin) noexcept {
    return fseeko(file, offset, origin);
}

std::int64_t _ftelli64(std::FILE* file) noexcept {
    return ftello(file);
}

BOOL DeleteFileW(LPCWSTR name) noexcept try {
    if (name == nullptr) {
        return Fail(ERROR_INVALID_PARAMETER);
    }
    const std::string path = Utf8::ToNarrow(name);
    struct stat file {};
    if (lstat(path.c_str(), &file) != 0) {
        return Fail(ErrorFromErrno());
    }
    if (S_ISDIR(file.st_mode) || IsReadOnly(file)) {
        return Fail(ERROR_ACCESS_DENIED);
    }
    return unlink(path.c_str()) == 0 ? TRUE : Fail(ErrorFromErrno());
} catch (const std::bad_alloc&) {
    return Fail(ERROR_NOT_ENOUGH_MEMORY);
}

DWORD GetFileAttributesW(LPCWSTR name) noexcept try {
    struct stat file {};
    if (name == nullptr || lstat(Utf8::ToNarrow(name).c_str(), &file) != 0) {
        SetLastError(name == nullptr ? ERROR_INVALID_PARAMETER : ErrorFromErrno());
        return INVALID_FILE_ATTRIBUTES;
    }
    const DWORD attributes = (S_ISDIR(file.st_mode) ? FILE_ATTRIBUTE_DIRECTORY : 0) |
                             (IsReadOnly(file) ? FILE_ATTRIBUTE_READONLY : 0);
    return attributes != 0 ? attributes : FILE_ATTRIBUTE_NORMAL;
} catch (const std::bad_alloc&) {
    SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return INVALID_FILE_ATTRIBUTES;
}

BOOL SetFileAttributesW(LPCWSTR name, DWORD attributes) noexcept try {
    if (name == nullptr) {
        return Fail(ERROR_INVALID_PARAMETER);
    }
    const std::string path = Utf8::ToNarrow(name);
    struct stat file {};
    if (lstat(path.c_str(), &file) != 0) {
        return Fail(ErrorFromErrno());
    }
    if (!S_ISREG(file.st_mode)) {
        return TRUE;
    }
    constexpr mode_t kWrite = S_IWUSR | S_IWGRP | S_IWOTH;
    const bool readOnly = (attributes & FILE_ATTRIBUTE_READONLY) != 0;
    const mode_t mode = readOnly ? file.st_mode & ~kWrite : file.st_mode | S_IWUSR;
    const bool set = fchmodat(AT_FDCWD, path.c_str(), mode & 07777, AT_SYMLINK_NOFOLLOW) == 0;
    return set ? TRUE : Fail(ErrorFromErrno());
} catch (const std::bad_alloc&) {
    return Fail(ERROR_NOT_ENOUGH_MEMORY);
}
