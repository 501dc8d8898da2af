#include "cli/run/Context.h"

#include <nlohmann/json.hpp>

namespace brevint::cli {

ExitCode RunSignOut(Context& context) {
    const std::string url = context.TheSession().url;
    if (context.TheSession().cookies.empty()) {
        throw Failure(ExitCode::NotAuthorised, "You are not signed in to " + url + ".");
    }
    Error error;
    CallOptions limits = context.Limits();
    limits.error = &error;
    context.TheClient().SignOut(limits);
    ForgetSession();
    // A session that the service knows no more is over, as it should be.
    if (error && error.failure != brevint::Failure::NotSignedIn) {
        throw FailureOf("The session is forgotten here, but " + url + " was not told of it.",
                        error);
    }
    context.Out().Line("Signed out of " + url + ".");
    context.Out().Document({{"url", url}});
    return ExitCode::Success;
}

} // namespace brevint::cli
