#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace brevint::explorer {

/// A session that outlives the program.
struct StoredSession {
    std::string url;
    std::string user;
    std::string session; ///< See brevint::Client::RestoreSession. A credential.
};

/// Keeps one session in a file that only the user can read, and that Windows' data protection lets
/// only the user decrypt.
class SessionStore {
public:
    /// The folder is made when a session is kept.
    explicit SessionStore(std::filesystem::path folder) : m_folder(std::move(folder)) {}

    /// The store of a profile below the user's local application data; nothing where Windows names
    /// no such folder.
    static std::optional<SessionStore> OfUser(const std::wstring& profile = {});

    /// Returns whether the session is kept. If not, no older one is either.
    bool Save(const StoredSession& session);
    /// None as well where the file cannot be read or decrypted, or others could have written it.
    std::optional<StoredSession> Load() const;
    void Forget();

private:
    std::filesystem::path File() const { return m_folder / L"session"; }

    std::filesystem::path m_folder;
};

} // namespace brevint::explorer
