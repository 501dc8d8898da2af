#include "support/linux/Place.h"

#include "support/linux/FileCalls.h"

#include <climits>
#include <vector>

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/vfs.h>
#include <sys/xattr.h>

namespace fs = std::filesystem;

std::error_code Place::Follow(fs::path path) {
    constexpr int kMostLinks = 40; // the kernel's limit
    for (int links = 0; links <= kMostLinks; ++links) {
        const fs::path parent = path.has_parent_path() ? path.parent_path() : ".";
        folder = Descriptor(open(parent.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
        name = path.filename();
        if (!folder) {
            return FileError();
        }
        std::string target(PATH_MAX, '\0');
        const ssize_t length = readlinkat(folder.Get(), name.c_str(), target.data(), target.size());
        if (length < 0) {
            return errno == EINVAL || errno == ENOENT ? std::error_code() : FileError();
        }
        struct statfs system {};
        if (fstatfs(folder.Get(), &system) == 0 && system.f_type == PROC_SUPER_MAGIC) {
            isStream = true;
            return {};
        }
        target.resize(static_cast<std::size_t>(length));
        path = parent / target;
    }
    return FileError(ELOOP);
}

bool Place::CopyPermissions(const struct stat& here, int to) const {
    struct stat made {};
    if (fstat(to, &made) != 0) {
        return false;
    }
    if (here.st_uid != made.st_uid) {
        static_cast<void>(fchown(to, here.st_uid, static_cast<gid_t>(-1)));
    }
    const bool sameGroup =
        here.st_gid == made.st_gid || fchown(to, static_cast<uid_t>(-1), here.st_gid) == 0;
    mode_t mode = (here.st_mode & 0777) | S_IWUSR;
    if (!sameGroup) {
        mode = (mode & ~mode_t{S_IRWXG}) | ((mode & S_IRWXO) << 3);
    } else if (!CopyAccessList(to)) {
        return false;
    }
    return fchmod(to, mode) == 0;
}

bool Place::CopyAccessList(int to) const {
    constexpr const char* kName = "system.posix_acl_access";
    const fs::path path = fs::path("/proc/self/fd") / std::to_string(folder.Get()) / name;
    const ssize_t size = getxattr(path.c_str(), kName, nullptr, 0);
    if (size <= 0) {
        return true;
    }
    std::vector<char> list(static_cast<std::size_t>(size));
    return getxattr(path.c_str(), kName, list.data(), list.size()) == size &&
           fsetxattr(to, kName, list.data(), list.size(), 0) == 0;
}
