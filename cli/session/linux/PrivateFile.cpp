#include "cli/session/PrivateFile.h"

#include "cli/output/Failure.h"
#include "cli/output/Paths.h"
#include "support/linux/Descriptor.h"

#include <array>
#include <cerrno>
#include <cstdlib>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace brevint::cli {

namespace {

[[noreturn]] void Fail(const std::filesystem::path& path, const char* cannot) {
    const std::error_code reason(errno, std::generic_category());
    throw LocalFailure("\"" + PathToUtf8(path) + "\" cannot be " + cannot, reason);
}

/// An environment variable that holds an absolute path; empty otherwise.
std::filesystem::path FolderVariable(const char* name) {
    const char* const value = std::getenv(name);
    std::filesystem::path folder(value ? value : "");
    return folder.is_absolute() ? folder : std::filesystem::path();
}

/// Opens the folder, provided that nobody else can put files into it; invalid where there is none.
Descriptor OpenPrivateFolder(const std::filesystem::path& folder) {
    Descriptor opened(open(folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    if (!opened) {
        if (errno == ENOENT || errno == ENOTDIR) {
            return opened;
        }
        Fail(folder, "opened");
    }
    struct stat status = {};
    if (fstat(opened.Get(), &status) != 0) {
        Fail(folder, "read");
    }
    if (status.st_uid != geteuid() || (status.st_mode & (S_IWGRP | S_IWOTH)) != 0) {
        throw Failure(ExitCode::LocalFile,
                      "The folder \"" + PathToUtf8(folder) +
                          "\" is not one of yours that nobody else may write to.",
                      "Others may have put a session there: delete it, and sign in again.");
    }
    return opened;
}

} // namespace

std::filesystem::path StateFolder() {
    std::filesystem::path base = FolderVariable("XDG_STATE_HOME");
    if (base.empty()) {
        const std::filesystem::path home = FolderVariable("HOME");
        if (home.empty()) {
            throw Failure(ExitCode::LocalFile, "There is no folder to keep the session in.",
                          "Set HOME or XDG_STATE_HOME to the absolute path of a folder.");
        }
        base = home / ".local" / "state";
    }
    return base / "brevint";
}

void CreatePrivateFolder(const std::filesystem::path& folder) {
    std::error_code reason;
    std::filesystem::create_directories(folder.parent_path(), reason);
    if (mkdir(folder.c_str(), S_IRWXU) != 0 && errno != EEXIST) {
        Fail(folder, "made");
    }
    OpenPrivateFolder(folder);
}

void CreatePrivateFile(const std::filesystem::path& path, std::string_view content) {
    const Descriptor file(open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
                               S_IRUSR | S_IWUSR));
    if (!file) {
        Fail(path, "made");
    }
    while (!content.empty()) {
        const ssize_t written = write(file.Get(), content.data(), content.size());
        if (written >= 0) {
            content.remove_prefix(static_cast<std::size_t>(written));
        } else if (errno != EINTR) {
            Fail(path, "written");
        }
    }
    if (fsync(file.Get()) != 0) {
        Fail(path, "written");
    }
}

std::optional<std::string> ReadPrivateFile(const std::filesystem::path& path) {
    const Descriptor folder = OpenPrivateFolder(path.parent_path());
    if (!folder) {
        return std::nullopt;
    }
    const Descriptor file(openat(folder.Get(), path.filename().c_str(),
                                 O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    if (!file) {
        if (errno == ENOENT) {
            return std::nullopt;
        }
        Fail(path, "opened");
    }
    struct stat status = {};
    if (fstat(file.Get(), &status) != 0) {
        Fail(path, "read");
    }
    if (!S_ISREG(status.st_mode) || status.st_uid != geteuid() ||
        (status.st_mode & (S_IRWXG | S_IRWXO)) != 0) {
        throw Failure(ExitCode::LocalFile,
                      "\"" + PathToUtf8(path) +
                          "\" is not a file of yours that nobody else may read.",
                      "Others may know the session that it holds: delete it and sign in again.");
    }
    std::string content;
    std::array<char, 4096> buffer{};
    for (;;) {
        const ssize_t count = read(file.Get(), buffer.data(), buffer.size());
        if (count == 0) {
            return content;
        }
        if (count > 0) {
            content.append(buffer.data(), static_cast<std::size_t>(count));
        } else if (errno != EINTR) {
            Fail(path, "read");
        }
    }
}

} // namespace brevint::cli
