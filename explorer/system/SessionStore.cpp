#include "explorer/system/SessionStore.h"

#include "explorer/system/Handles.h"
#include "support/windows/Ownership.h"

#include <array>
#include <fstream>
#include <iterator>
#include <string_view>
#include <system_error>

#include <shlobj.h>
#include <wincrypt.h>

namespace brevint::explorer {

namespace {

/// What data protection has made, which holds a credential one way or the other.
struct ProtectedBlob {
    DATA_BLOB blob = {};

    ProtectedBlob() = default;
    ProtectedBlob(const ProtectedBlob&) = delete;
    ProtectedBlob& operator=(const ProtectedBlob&) = delete;
    ~ProtectedBlob() {
        if (blob.pbData) {
            SecureZeroMemory(blob.pbData, blob.cbData);
            LocalFree(blob.pbData);
        }
    }
    std::string Bytes() const { return {reinterpret_cast<const char*>(blob.pbData), blob.cbData}; }
};

DATA_BLOB ToBlob(std::string& bytes) {
    return {static_cast<DWORD>(bytes.size()), reinterpret_cast<BYTE*>(bytes.data())};
}

/// Makes the folder, and those above it that are missing, for the user only.
bool MakeFolder(const std::filesystem::path& folder, SECURITY_ATTRIBUTES& attributes) {
    std::error_code ignored;
    if (folder.has_relative_path() && !std::filesystem::exists(folder.parent_path(), ignored) &&
        !MakeFolder(folder.parent_path(), attributes)) {
        return false;
    }
    return CreateDirectoryW(folder.c_str(), &attributes) || GetLastError() == ERROR_ALREADY_EXISTS;
}

bool Write(HANDLE file, std::string_view bytes) {
    DWORD written = 0;
    return WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) &&
           written == bytes.size();
}

} // namespace

std::optional<SessionStore> SessionStore::OfUser(const std::wstring& profile) {
    wchar_t* found = nullptr;
    const HRESULT result = SHGetKnownFolderPath(FOLDERID_LocalAppData, 0, nullptr, &found);
    const TaskMemoryPtr<wchar_t> path(found);
    if (FAILED(result)) {
        return std::nullopt;
    }
    const std::filesystem::path folder = std::filesystem::path(found) / L"Brevint" / L"Explorer";
    return SessionStore(profile.empty() ? folder : folder / profile);
}

bool SessionStore::Save(const StoredSession& session) {
    Forget();
    std::string text = session.url + '\n' + session.user + '\n' + session.session;
    DATA_BLOB plain = ToBlob(text);
    ProtectedBlob secret;
    const bool isProtected = CryptProtectData(&plain, L"Brevint", nullptr, nullptr, nullptr,
                                              CRYPTPROTECT_UI_FORBIDDEN, &secret.blob) != FALSE;
    SecureZeroMemory(text.data(), text.size());
    const LocalPtr descriptor = UsersOnly();
    SECURITY_ATTRIBUTES attributes = {sizeof attributes, descriptor.get(), FALSE};
    if (!isProtected || !descriptor || !MakeFolder(m_folder, attributes)) {
        return false;
    }
    const HANDLE opened = CreateFileW(File().c_str(), GENERIC_WRITE, 0, &attributes, CREATE_NEW,
                                      FILE_ATTRIBUTE_NORMAL, nullptr);
    if (opened == INVALID_HANDLE_VALUE) {
        return false;
    }
    HandlePtr file(opened);
    const bool isWritten = Write(file.get(), secret.Bytes());
    file.reset();
    if (!isWritten) {
        Forget();
    }
    return isWritten;
}

std::optional<StoredSession> SessionStore::Load() const {
    const HANDLE opened = CreateFileW(File().c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                      OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (opened == INVALID_HANDLE_VALUE) {
        return std::nullopt;
    }
    const HandlePtr file(opened);
    if (!IsUsersOnly(file.get(), FILE_READ_DATA | FILE_WRITE_DATA | GENERIC_READ | GENERIC_WRITE)) {
        return std::nullopt;
    }
    constexpr DWORD kLongest = 1 << 20;
    std::string bytes(kLongest, '\0');
    DWORD size = 0;
    if (!ReadFile(file.get(), bytes.data(), kLongest, &size, nullptr)) {
        return std::nullopt;
    }
    bytes.resize(size);
    DATA_BLOB secret = ToBlob(bytes);
    ProtectedBlob plain;
    if (!CryptUnprotectData(&secret, nullptr, nullptr, nullptr, nullptr, CRYPTPROTECT_UI_FORBIDDEN,
                            &plain.blob)) {
        return std::nullopt;
    }
    const std::string text = plain.Bytes();
    const std::size_t url = text.find('\n');
    const std::size_t user = text.find('\n', url + 1);
    if (url == std::string::npos || user == std::string::npos) {
        return std::nullopt;
    }
    return StoredSession{text.substr(0, url), text.substr(url + 1, user - url - 1),
                         text.substr(user + 1)};
}

void SessionStore::Forget() {
    std::error_code ignored;
    std::filesystem::remove(File(), ignored);
}

} // namespace brevint::explorer
