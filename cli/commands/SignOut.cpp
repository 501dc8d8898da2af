#include "brevint/ISignOutProxy.h"
#include "brevint/SignOutResponse.h"
#include "cli/output/Failure.h"
#include "cli/run/Context.h"

#include <nlohmann/json.hpp>

namespace brevint::cli {

namespace {

void Forget(const std::string& url) {
    ForgetCookies(url);
    ForgetSession();
}

} // namespace

ExitCode RunSignOut(Context& context) {
    const std::string url = context.TheSession().url;
    if (context.TheSession().cookies.empty()) {
        throw Failure(ExitCode::NotAuthorised, "You are not signed in to " + url + ".");
    }
    try {
        context.TheService().Call(
            "The session is forgotten here, but " + url + " was not told of it.",
            [](Service& service) { return service.SignOut()->SignOut(service.Url()); });
    } catch (const Failure& failure) {
        Forget(url);
        // A session that the service knows no more is over, as it should be.
        if (failure.exitCode != ExitCode::NotAuthorised) {
            throw;
        }
    }
    Forget(url);
    context.Out().Line("Signed out of " + url + ".");
    context.Out().Document({{"url", url}});
    return ExitCode::Success;
}

} // namespace brevint::cli
