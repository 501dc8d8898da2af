#include "cli/Session.h"

#include "cli/Failure.h"
#include "cli/Interrupt.h"
#include "cli/PrivateFile.h"
#include "cli/ServiceUrl.h"
#include "cli/TemporaryFile.h"
#include "cli/Utf8.h"

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
