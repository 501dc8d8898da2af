#include "cli/session/PrivateFile.h"

#include "cli/output/Failure.h"
#include "cli/output/Paths.h"
#include "support/windows/Ownership.h"

#include <windows.h>

namespace brevint::cli {

namespace {

[[noreturn]] void Fail(const std::filesystem::path& path, const char* cannot) {
    const std::error_code reason(static_cast<int>(GetLastError()), std::system_category());
    throw LocalFailure("\"" + PathToUtf8(path) + "\" cannot be " + cannot, reason);
}

/// A security descriptor that lets nobody but the user in.
LocalPtr OwnerOnly() {
    LocalPtr descriptor = UsersOnly();
    if (!descriptor) {
        throw LocalFailure(
            "Windows does not tell who is to own the session's file",
            std::error_code(static_cast<int>(GetLastError()), std::system_category()));
    }
    return descriptor;
}

/// Opens the folder, provided that nobody else can put files into it; null where there is none.
HandlePtr OpenPrivateFolder(const std::filesystem::path& folder) {
    constexpr DWORD kWriting = FILE_ADD_FILE | FILE_ADD_SUBDIRECTORY | FILE_DELETE_CHILD |
                               WRITE_DAC | WRITE_OWNER | GENERIC_WRITE;
    const HANDLE opened = CreateFileW(folder.c_str(), READ_CONTROL,
                                      FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                      nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (opened == INVALID_HANDLE_VALUE) {
        if (GetLastError() == ERROR_FILE_NOT_FOUND || GetLastError() == ERROR_PATH_NOT_FOUND) {
            return nullptr;
        }
        Fail(folder, "opened");
    }
    HandlePtr handle(opened);
    if (!IsUsersOnly(handle.get(), kWriting)) {
        throw Failure(ExitCode::LocalFile,
                      "The folder \"" + PathToUtf8(folder) +
                          "\" is not one of yours that nobody else may write to.",
                      "Others may have put a session there: delete it, and sign in again.");
    }
    return handle;
}

} // namespace

std::filesystem::path StateFolder() {
    const wchar_t* const base = _wgetenv(L"LOCALAPPDATA");
    if (!base || !std::filesystem::path(base).is_absolute()) {
        throw Failure(ExitCode::LocalFile, "There is no folder to keep the session in.",
                      "Set LOCALAPPDATA to the absolute path of a folder.");
    }
    return std::filesystem::path(base) / L"Brevint";
}

void CreatePrivateFolder(const std::filesystem::path& folder) {
    std::error_code reason;
    std::filesystem::create_directories(folder.parent_path(), reason);
    const LocalPtr descriptor = OwnerOnly();
    SECURITY_ATTRIBUTES attributes = {sizeof attributes, descriptor.get(), FALSE};
    if (!CreateDirectoryW(folder.c_str(), &attributes) && GetLastError() != ERROR_ALREADY_EXISTS) {
        Fail(folder, "made");
    }
    OpenPrivateFolder(folder);
}

void CreatePrivateFile(const std::filesystem::path& path, std::string_view content) {
    const LocalPtr descriptor = OwnerOnly();
    SECURITY_ATTRIBUTES attributes = {sizeof attributes, descriptor.get(), FALSE};
    const HANDLE opened = CreateFileW(path.c_str(), GENERIC_WRITE, 0, &attributes, CREATE_NEW,
                                      FILE_ATTRIBUTE_NORMAL, nullptr);
    if (opened == INVALID_HANDLE_VALUE) {
        Fail(path, "made");
    }
    const HandlePtr file(opened);
    DWORD written = 0;
    if (!WriteFile(file.get(), content.data(), static_cast<DWORD>(content.size()), &written,
                   nullptr) ||
        written != content.size() || !FlushFileBuffers(file.get())) {
        Fail(path, "written");
    }
}

std::optional<std::string> ReadPrivateFile(const std::filesystem::path& path) {
    const HandlePtr folder = OpenPrivateFolder(path.parent_path());
    if (!folder) {
        return std::nullopt;
    }
    const HANDLE opened =
        CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_DELETE, nullptr,
                    OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (opened == INVALID_HANDLE_VALUE) {
        if (GetLastError() == ERROR_FILE_NOT_FOUND || GetLastError() == ERROR_PATH_NOT_FOUND) {
            return std::nullopt;
        }
        Fail(path, "opened");
    }
    const HandlePtr file(opened);
    if (!IsUsersOnly(file.get(), FILE_READ_DATA | GENERIC_READ)) {
        throw Failure(ExitCode::LocalFile,
                      "\"" + PathToUtf8(path) + "\" is not a file that nobody but you may read.",
                      "Others may know the session that it holds: delete it and sign in again.");
    }
    std::string content;
    char buffer[4096];
    for (;;) {
        DWORD count = 0;
        if (!ReadFile(file.get(), buffer, static_cast<DWORD>(std::size(buffer)), &count, nullptr)) {
            Fail(path, "read");
        }
        if (count == 0) {
            return content;
        }
        content.append(buffer, count);
    }
}

} // namespace brevint::cli
