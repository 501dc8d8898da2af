#include "cli/run/Context.h"

#include "cli/output/Failure.h"
#include "cli/session/ServiceUrl.h"

#include <utility>

namespace brevint::cli {

namespace {

/// The session to work with. Cookies go to no other address than the one that they came from.
Session ChooseSession(const Options& options) {
    std::optional<Session> session = LoadSession();
    if (options.url.empty()) {
        if (!session) {
            throw Failure(ExitCode::NotAuthorised, "You are not signed in.",
                          "Sign in with brevint sign-in --url URL --user NAME.");
        }
        return *std::move(session);
    }
    std::string url = CheckServiceUrl(options.url, options.insecureHttp);
    if (session && session->url == url) {
        return *std::move(session);
    }
    return Session{std::move(url), {}, {}};
}

} // namespace

Context::Context(Options options) : m_options(std::move(options)), m_output(m_options.json) {}

const Session& Context::TheSession() {
    if (!m_session) {
        m_session = ChooseSession(m_options);
    }
    return *m_session;
}

Service& Context::TheService() {
    if (!m_service) {
        m_service = std::make_shared<Service>(TheSession(), Timeout());
    }
    return *m_service;
}

ItemResolver& Context::Items() {
    if (!m_items) {
        m_items = std::make_unique<ItemResolver>(TheService(), m_options.root);
    }
    return *m_items;
}

} // namespace brevint::cli
