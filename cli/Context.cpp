#include "cli/Context.h"

#include "cli/Failure.h"
#include "cli/ServiceUrl.h"

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

Context::Context(Options options) : options_(std::move(options)), output_(options_.json) {}

const Session& Context::TheSession() {
    if (!session_) {
        session_ = ChooseSession(options_);
    }
    return *session_;
}

Service& Context::TheService() {
    if (!service_) {
        service_ = std::make_shared<Service>(TheSession(), Timeout());
    }
    return *service_;
}

ItemResolver& Context::Items() {
    if (!items_) {
        items_ = std::make_unique<ItemResolver>(TheService(), options_.root);
    }
    return *items_;
}

} // namespace brevint::cli
