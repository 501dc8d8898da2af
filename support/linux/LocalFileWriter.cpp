#include "support/LocalFileWriter.h"

#include "support/linux/Descriptor.h"

#include <cerrno>
#include <climits>
#include <vector>

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <sys/xattr.h>

namespace {

namespace fs = std::filesystem;

std::error_code Error(int number = errno) {
    return {number, std::generic_category()};
}

bool IsSameFile(const struct stat& one, const struct stat& other) {
    return one.st_dev == other.st_dev && one.st_ino == other.st_ino;
}

/// Where a file lies once its links have been followed.
struct Place {
    Descriptor folder;
    std::string name;
    bool isStream = false; ///< It is a link of /proc, which stands for something that is open.
};

std::error_code Follow(fs::path path, Place& place) {
    constexpr int kMostLinks = 40; // the kernel's limit
    for (int links = 0; links <= kMostLinks; ++links) {
        const fs::path parent = path.has_parent_path() ? path.parent_path() : ".";
        place.folder = Descriptor(open(parent.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
        place.name = path.filename();
        if (!place.folder) {
            return Error();
        }
        std::string target(PATH_MAX, '\0');
        const ssize_t length =
            readlinkat(place.folder.Get(), place.name.c_str(), target.data(), target.size());
        if (length < 0) {
            return errno == EINVAL || errno == ENOENT ? std::error_code() : Error();
        }
        struct statfs system {};
        if (fstatfs(place.folder.Get(), &system) == 0 && system.f_type == PROC_SUPER_MAGIC) {
            place.isStream = true;
            return {};
        }
        target.resize(static_cast<std::size_t>(length));
        path = parent / target;
    }
    return Error(ELOOP);
}

/// Gives the file the access list, if there is one, of another: without it the permissions of the
/// group would mean another group of people.
bool CopyAccessList(const Place& from, int to) {
    constexpr const char* kName = "system.posix_acl_access";
    const fs::path path = fs::path("/proc/self/fd") / std::to_string(from.folder.Get()) / from.name;
    const ssize_t size = getxattr(path.c_str(), kName, nullptr, 0);
    if (size <= 0) {
        return true;
    }
    std::vector<char> list(static_cast<std::size_t>(size));
    return getxattr(path.c_str(), kName, list.data(), list.size()) == size &&
           fsetxattr(to, kName, list.data(), list.size(), 0) == 0;
}

/// Gives the file the permissions of the one that it is to replace. Whoever could not read the old
/// one cannot read the new one either.
bool CopyPermissions(const Place& from, const struct stat& old, int to) {
    struct stat made {};
    if (fstat(to, &made) != 0) {
        return false;
    }
    if (old.st_uid != made.st_uid) {
        static_cast<void>(fchown(to, old.st_uid, static_cast<gid_t>(-1)));
    }
    const bool sameGroup =
        old.st_gid == made.st_gid || fchown(to, static_cast<uid_t>(-1), old.st_gid) == 0;
    mode_t mode = (old.st_mode & 0777) | S_IWUSR;
    if (!sameGroup) {
        mode = (mode & ~mode_t{S_IRWXG}) | ((mode & S_IRWXO) << 3);
    } else if (!CopyAccessList(from, to)) {
        return false;
    }
    return fchmod(to, mode) == 0;
}

} // namespace

struct LocalFileWriter::Output {
    Descriptor file;
    std::string part; ///< Its name; empty when the destination itself is written to.
    Place place;
    bool replaces = false;
    struct stat old {}; ///< The file that it replaces.

    std::error_code OpenItself(const fs::path& destination);
    std::error_code OpenPart();
    bool IsPartInPlace() const;
};

/// Opens what is there, provided that it is still what was looked at.
std::error_code LocalFileWriter::Output::OpenItself(const fs::path& destination) {
    int number = -1;
    do {
        number = open(destination.c_str(), O_WRONLY | O_NOCTTY | O_CLOEXEC);
    } while (number < 0 && errno == EINTR);
    file = Descriptor(number);
    struct stat opened {};
    if (!file || fstat(number, &opened) != 0) {
        return Error();
    }
    if (!IsSameFile(opened, old)) {
        return Error(EBUSY);
    }
    return S_ISREG(opened.st_mode) && ftruncate(number, 0) != 0 ? Error() : std::error_code();
}

std::error_code LocalFileWriter::Output::OpenPart() {
    part = PartName();
    // What replaces a file gets that one's permissions at the end, and has no more until then.
    const mode_t mode = replaces ? S_IRUSR | S_IWUSR : 0666;
    file = Descriptor(openat(place.folder.Get(), part.c_str(),
                             O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode));
    if (!file) {
        const std::error_code reason = Error();
        part.clear();
        return reason;
    }
    return {};
}

/// Whether the part file's name still stands for the file that is open.
bool LocalFileWriter::Output::IsPartInPlace() const {
    struct stat named {};
    struct stat opened {};
    return fstatat(place.folder.Get(), part.c_str(), &named, AT_SYMLINK_NOFOLLOW) == 0 &&
           fstat(file.Get(), &opened) == 0 && IsSameFile(named, opened);
}

LocalFileWriter::LocalFileWriter() = default;

LocalFileWriter::~LocalFileWriter() {
    Abandon();
}

std::error_code LocalFileWriter::Open(const fs::path& destination) {
    Abandon();
    auto output = std::make_unique<Output>();
    output->replaces = stat(destination.c_str(), &output->old) == 0;
    if (!output->replaces && errno != ENOENT) {
        return Error();
    }
    if (!destination.has_filename() || (output->replaces && S_ISDIR(output->old.st_mode))) {
        return Error(EISDIR);
    }
    if (const std::error_code reason = Follow(destination, output->place)) {
        return reason;
    }
    const bool isFile = !output->replaces || S_ISREG(output->old.st_mode);
    if (const std::error_code reason = isFile && !output->place.isStream
                                           ? output->OpenPart()
                                           : output->OpenItself(destination)) {
        return reason;
    }
    m_output = std::move(output);
    return {};
}

std::error_code LocalFileWriter::Write(std::string_view bytes) {
    if (!m_output) {
        return Error(EBADF);
    }
    while (!bytes.empty()) {
        const ssize_t written = write(m_output->file.Get(), bytes.data(), bytes.size());
        if (written >= 0) {
            bytes.remove_prefix(static_cast<std::size_t>(written));
        } else if (errno != EINTR) {
            return Error();
        }
    }
    return {};
}

std::error_code LocalFileWriter::Finish() {
    if (!m_output) {
        return Error(EBADF);
    }
    Output& output = *m_output;
    // An old file goes only once the new one is on the disk: a machine that fails in between would
    // leave neither.
    if (output.replaces && !output.part.empty() &&
        (!CopyPermissions(output.place, output.old, output.file.Get()) ||
         fsync(output.file.Get()) != 0)) {
        return Error();
    }
    if (!output.part.empty() && !output.IsPartInPlace()) {
        return Error(EBUSY);
    }
    const int folder = output.place.folder.Get();
    if (!output.file.Close() ||
        (!output.part.empty() &&
         renameat(folder, output.part.c_str(), folder, output.place.name.c_str()) != 0)) {
        return Error();
    }
    m_output.reset();
    return {};
}

void LocalFileWriter::Abandon() noexcept {
    if (m_output && !m_output->part.empty()) {
        unlinkat(m_output->place.folder.Get(), m_output->part.c_str(), 0);
    }
    m_output.reset();
}
