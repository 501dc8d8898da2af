#include "cli/session/Session.h"

#include "cli/output/Failure.h"
#include "cli/output/Paths.h"
#include "cli/session/PrivateFile.h"
#include "cli/session/ServiceUrl.h"
#include "cli/terminal/Interrupt.h"
#include "support/LocalFileWriter.h"

#include <nlohmann/json.hpp>

namespace brevint::cli {

namespace {

std::filesystem::path SessionFile() {
    return StateFolder() / "session.json";
}

/// The name of a file that is in the making, and the file itself once somebody has made it: gone
/// with this object unless it was moved.
class TemporaryFile {
public:
    explicit TemporaryFile(const std::filesystem::path& folder)
        : m_path(folder / LocalFileWriter::PartName()) {}
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile() {
        std::error_code ignored;
        std::filesystem::remove(m_path, ignored);
    }

    const std::filesystem::path& Path() const { return m_path; }

    /// Puts the file in the place of `target` in one step, whether there is one or not.
    void MoveTo(const std::filesystem::path& target) {
        std::error_code reason;
        std::filesystem::rename(m_path, target, reason);
        if (reason) {
            throw LocalFailure("\"" + PathToUtf8(target) + "\" cannot be replaced", reason);
        }
    }

private:
    std::filesystem::path m_path;
};

} // namespace

std::optional<Session> LoadSession() {
    const std::filesystem::path path = SessionFile();
    const std::optional<std::string> text = ReadPrivateFile(path);
    if (!text) {
        return std::nullopt;
    }
    std::optional<Session> session = ParseSession(*text);
    if (!session) {
        throw Failure(ExitCode::LocalFile,
                      "\"" + PathToUtf8(path) + "\" does not hold a session of this program.",
                      "Delete it and sign in again.");
    }
    return session;
}

void SaveSession(const Session& session) {
    const Interrupt interrupt; // the temporary file holds a credential too
    const std::filesystem::path path = SessionFile();
    CreatePrivateFolder(path.parent_path());
    TemporaryFile file(path.parent_path());
    CreatePrivateFile(file.Path(), FormatSession(session));
    file.MoveTo(path);
}

void ForgetSession() {
    const std::filesystem::path path = SessionFile();
    std::error_code reason;
    std::filesystem::remove(path, reason);
    if (reason) {
        throw LocalFailure("\"" + PathToUtf8(path) + "\" cannot be deleted", reason);
    }
}

std::string FormatSession(const Session& session) {
    const nlohmann::json document = {
        {"url", session.url}, {"user", session.user}, {"cookies", session.cookies}};
    return document.dump(2, ' ', false, nlohmann::json::error_handler_t::replace) + "\n";
}

std::optional<Session> ParseSession(std::string_view text) {
    const auto document = nlohmann::json::parse(text, nullptr, false);
    try {
        Session session{document.at("url"), document.at("user"), document.at("cookies")};
        // Whether the address may be http was settled at the sign-in.
        if (session.url == CheckServiceUrl(session.url, true)) {
            return session;
        }
    } catch (const nlohmann::json::exception&) {
        return std::nullopt;
    } catch (const Failure&) {
        return std::nullopt;
    }
    return std::nullopt;
}

} // namespace brevint::cli
