#include "cli/run/Context.h"

#include <nlohmann/json.hpp>

namespace brevint::cli {

ExitCode RunSignOut(Context& context) {
    const std::string url = context.TheSession().url;
    if (context.TheSession().cookies.empty()) {
        throw Failure(ExitCode::NotAuthorised, "You are not signed in to " + url + ".");
    }
    const std::string summary =
        "The session is forgotten here, but " + url + " was not told of it.";
    Error error;
    context.Ask(summary, [&](Client& client, CallOptions limits) {
        limits.error = &error;
        client.SignOut(limits);
    });
    ForgetSession();
    // A session that the service knows no more is over, as it should be.
    if (error && error.failure != brevint::Failure::NotSignedIn) {
        throw FailureOf(summary, error);
    }
    context.Out().Line("Signed out of " + url + ".");
    context.Out().Document({{"url", url}});
    return ExitCode::Success;
}

} // namespace brevint::cli
