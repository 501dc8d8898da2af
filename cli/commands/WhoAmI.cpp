#include "cli/run/Context.h"

#include <nlohmann/json.hpp>

namespace brevint::cli {

ExitCode RunWhoAmI(Context& context) {
    const std::string& url = context.TheSession().url;
    const Identity identity = context.Ask(
        url + " does not tell who is signed in.",
        [](Client& client, const CallOptions& limits) { return client.WhoAmI(limits); });
    const char* const role = identity.role == Role::Administrator ? "administrator" : "user";
    context.Out().Line(identity.name + " (" + role + ") at " + url);
    context.Out().Document(
        {{"user", identity.name}, {"role", role}, {"url", url}, {"portal", identity.portalUrl}});
    return ExitCode::Success;
}

} // namespace brevint::cli
