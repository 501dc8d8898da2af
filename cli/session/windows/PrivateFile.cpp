#include "cli/session/PrivateFile.h"

#include "cli/output/Failure.h"
#include "cli/output/Paths.h"
#include "support/windows/Handles.h"

#include <cstddef>
#include <memory>
#include <vector>

#include <windows.h>

#include <aclapi.h>
#include <sddl.h>

namespace brevint::cli {

namespace {

[[noreturn]] void Fail(const std::filesystem::path& path, const char* cannot) {
    const std::error_code reason(static_cast<int>(GetLastError()), std::system_category());
    throw LocalFailure("\"" + PathToUtf8(path) + "\" cannot be " + cannot, reason);
}

[[noreturn]] void FailToProtect() {
    throw LocalFailure("Windows does not tell who is to own the session's file",
                       std::error_code(static_cast<int>(GetLastError()), std::system_category()));
}

/// The TOKEN_USER of this process.
std::vector<std::byte> CurrentUser() {
    HANDLE opened = nullptr;
    if (!OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &opened)) {
        FailToProtect();
    }
    const HandlePtr token(opened);
    DWORD size = 0;
    GetTokenInformation(token.get(), TokenUser, nullptr, 0, &size);
    std::vector<std::byte> user(size);
    if (size == 0 || !GetTokenInformation(token.get(), TokenUser, user.data(), size, &size)) {
        FailToProtect();
    }
    return user;
}

PSID Sid(std::vector<std::byte>& user) {
    return reinterpret_cast<TOKEN_USER*>(user.data())->User.Sid;
}

/// A security descriptor that lets the user in and nobody else, inherited by what lies in a folder.
LocalPtr OwnerOnly() {
    std::vector<std::byte> user = CurrentUser();
    LPWSTR text = nullptr;
    if (!ConvertSidToStringSidW(Sid(user), &text)) {
        FailToProtect();
    }
    const LocalPtr textOwner(text);
    const std::wstring definition =
        L"O:" + std::wstring(text) + L"D:P(A;OICI;FA;;;" + std::wstring(text) + L")";
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    if (!ConvertStringSecurityDescriptorToSecurityDescriptorW(definition.c_str(), SDDL_REVISION_1,
                                                              &descriptor, nullptr)) {
        FailToProtect();
    }
    return LocalPtr(descriptor);
}

/// Those who can read every file of the machine anyway.
bool IsSystemAccount(PSID sid) {
    return IsWellKnownSid(sid, WinLocalSystemSid) != FALSE ||
           IsWellKnownSid(sid, WinBuiltinAdministratorsSid) != FALSE;
}

/// Whether the access list gives those rights to nobody but the user.
bool IsPrivate(PACL list, PSID user, DWORD rights) {
    if (!list) {
        return false; // no list at all: everybody may do everything
    }
    for (DWORD i = 0; i < list->AceCount; ++i) {
        void* entry = nullptr;
        if (!GetAce(list, i, &entry)) {
            return false;
        }
        const auto* header = static_cast<const ACE_HEADER*>(entry);
        if (header->AceType == ACCESS_DENIED_ACE_TYPE ||
            (header->AceFlags & INHERIT_ONLY_ACE) != 0) {
            continue;
        }
        if (header->AceType != ACCESS_ALLOWED_ACE_TYPE) {
            return false;
        }
        auto* allowed = static_cast<ACCESS_ALLOWED_ACE*>(entry);
        PSID sid = &allowed->SidStart;
        if ((allowed->Mask & (rights | GENERIC_ALL)) != 0 && !EqualSid(sid, user) &&
            !IsSystemAccount(sid)) {
            return false;
        }
    }
    return true;
}

/// Whether the file or folder is the user's and nobody else has those rights.
bool IsPrivate(HANDLE file, DWORD rights) {
    PSID owner = nullptr;
    PACL list = nullptr;
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    if (GetSecurityInfo(file, SE_FILE_OBJECT,
                        OWNER_SECURITY_INFORMATION | DACL_SECURITY_INFORMATION, &owner, nullptr,
                        &list, nullptr, &descriptor) != ERROR_SUCCESS) {
        return false;
    }
    const LocalPtr descriptorOwner(descriptor);
    std::vector<std::byte> user = CurrentUser();
    return (EqualSid(owner, Sid(user)) || IsSystemAccount(owner)) &&
           IsPrivate(list, Sid(user), rights);
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
    if (!IsPrivate(handle.get(), kWriting)) {
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
    if (!IsPrivate(file.get(), FILE_READ_DATA | GENERIC_READ)) {
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
