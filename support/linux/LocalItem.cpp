#include "support/LocalItem.h"

#include "support/linux/FileCalls.h"

#include <fcntl.h>

LocalItem LookAtLocalItem(const std::filesystem::path& path) {
    struct stat found = {};
    if (lstat(path.c_str(), &found) != 0) {
        return {.kind = errno == ENOENT ? LocalItem::Kind::Missing : LocalItem::Kind::Other};
    }
    if (S_ISDIR(found.st_mode)) {
        return {.kind = LocalItem::Kind::Folder};
    }
    if (!S_ISREG(found.st_mode)) {
        return {.kind = LocalItem::Kind::Other};
    }
    return {.kind = LocalItem::Kind::File,
            .bytes = static_cast<std::uint64_t>(found.st_size),
            .modified = found.st_mtim.tv_sec};
}

std::error_code SetLocalFileTime(const std::filesystem::path& path, std::int64_t modified) {
    const timespec times[] = {{.tv_sec = 0, .tv_nsec = UTIME_OMIT},
                              {.tv_sec = modified, .tv_nsec = 0}};
    const int status = utimensat(AT_FDCWD, path.c_str(), times, AT_SYMLINK_NOFOLLOW);
    return status == 0 ? std::error_code() : FileError();
}
