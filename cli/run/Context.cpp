#include "cli/run/Context.h"

#include "cli/output/Failure.h"
#include "cli/run/Password.h"
#include "cli/run/Roots.h"
#include "cli/terminal/Terminal.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace brevint::cli {

namespace {

/// How often a wrong password may be typed.
constexpr int kSignInAttempts = 3;

/// The session to work with. Cookies go to no other address than the one that they came from.
Session ChooseSession(const Options& options) {
    std::optional<Session> session = LoadSession();
    if (options.url.empty()) {
        if (!session || session->cookies.empty()) {
            throw Failure(ExitCode::NotAuthorised, "You are not signed in.",
                          "Sign in with brevint sign-in --url URL --user NAME.");
        }
        return *std::move(session);
    }
    std::string url = options.url;
    url.erase(url.find_last_not_of('/') + 1);
    if (session && session->url == url) {
        return *std::move(session);
    }
    return Session{std::move(url), {}, {}, {}};
}

} // namespace

Client MakeClient(const std::string& url, const ClientSettings& settings) {
    Error error;
    Client client(url, settings, &error);
    if (error && url.starts_with("http://") && !settings.insecureHttp) {
        error.hint = "Use https://, or allow it with --insecure-http.";
    }
    if (error) {
        throw FailureOf("The service cannot be used.", error);
    }
    return client;
}

Context::Context(Options options)
    : m_options(std::move(options)), m_output(m_options.json, m_options.events, Stop()) {}

const Session& Context::TheSession() {
    if (!m_session) {
        m_session = ChooseSession(m_options);
    }
    return *m_session;
}

Client& Context::TheClient() {
    if (!m_client) {
        const Session& session = TheSession();
        // Whether the address may be http was settled when the user signed in to it.
        const bool isKnown = !session.cookies.empty();
        ClientSettings settings{.insecureHttp = m_options.insecureHttp || isKnown};
        settings.transfers.stallLimit = std::min<std::chrono::milliseconds>(
            settings.transfers.stallLimit, std::chrono::seconds(m_options.timeoutSeconds));
        settings.transfers.concurrent = m_options.concurrent;
        Client client = MakeClient(session.url, settings);
        Error error;
        if (isKnown && !client.RestoreSession(session.cookies, {.error = &error})) {
            throw Failure(ExitCode::LocalFile, "The session that was kept cannot be used.",
                          "Sign in again.");
        }
        m_client = std::move(client);
    }
    return *m_client;
}

Items& Context::TheItems() {
    if (!m_items) {
        m_items.emplace(TheClient(), KnownRoots(TheSession(), m_options.roots), Limits());
    }
    return *m_items;
}

void Context::SignInAgain() {
    Session session = TheSession();
    const std::string summary = "The session with " + session.url + " has ended.";
    if (session.user.empty() || !Terminal::IsTerminal(Terminal::Stream::Input)) {
        throw Failure(ExitCode::NotAuthorised, summary,
                      "Sign in with brevint sign-in --url URL --user NAME.");
    }
    m_output.Remark(summary);
    CallOptions limits = Limits();
    Error error;
    limits.error = &error;
    for (int attempt = 0; attempt < kSignInAttempts; ++attempt) {
        const std::string password = ReadPassword(session.user, Stop());
        TheClient().SignIn(session.user, password, limits);
        if (error.failure != brevint::Failure::SignInRefused) {
            break;
        }
        m_output.Remark(error.text);
    }
    if (error) {
        throw FailureOf("The sign-in to " + session.url + " failed.", error);
    }
    session.cookies = TheClient().SaveSession();
    SaveSession(session);
    m_session = std::move(session);
}

CallOptions Context::Limits() const {
    return {.stop = Stop(), .limit = std::chrono::seconds(m_options.timeoutSeconds)};
}

} // namespace brevint::cli
