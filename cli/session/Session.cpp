#include "cli/session/Session.h"

#include "cli/output/Failure.h"
#include "cli/output/Paths.h"
#include "cli/session/PrivateFile.h"
#include "cli/session/TemporaryFile.h"

#include <nlohmann/json.hpp>

namespace brevint::cli {

namespace {

std::filesystem::path SessionFile() {
    return StateFolder() / "session.json";
}

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
    const nlohmann::json document = {{"url", session.url},
                                     {"user", session.user},
                                     {"cookies", session.cookies},
                                     {"roots", session.roots}};
    return document.dump(2, ' ', false, nlohmann::json::error_handler_t::replace) + "\n";
}

std::optional<Session> ParseSession(std::string_view text) {
    const auto document = nlohmann::json::parse(text, nullptr, false);
    try {
        return Session{document.at("url"), document.at("user"), document.at("cookies"),
                       document.value("roots", std::map<std::string, std::string>())};
    } catch (const nlohmann::json::exception&) {
        return std::nullopt;
    }
}

} // namespace brevint::cli
