#include "cli/run/Context.h"
#include "cli/run/Password.h"
#include "cli/run/Roots.h"
#include "cli/session/PrivateFile.h"

#include <nlohmann/json.hpp>

namespace brevint::cli {

ExitCode RunSignIn(Context& context) {
    const Options& settings = context.Settings();
    if (settings.url.empty()) {
        throw Failure(ExitCode::Usage, "sign-in needs the address of the service.",
                      "Give it with --url URL.");
    }
    CreatePrivateFolder(StateFolder()); // what is wrong with it shows before the sign-in
    std::string url = settings.url;
    url.erase(url.find_last_not_of('/') + 1);
    Session session{url, settings.user, {}, KnownRoots({}, settings.roots)};
    const std::string summary = "The sign-in to " + session.url + " failed.";
    Client client = MakeClient(session.url, {.insecureHttp = settings.insecureHttp});
    const std::string password = ReadPassword(settings.user, context.Stop());
    Attempt(summary, [&] {
        client.SignIn(settings.user, password, context.Limits());
        session.cookies = client.SaveSession();
    });
    SaveSession(session);
    context.Out().Line("Signed in to " + session.url + " as " + settings.user + ".");
    context.Out().Document({{"url", session.url}, {"user", settings.user}});
    return ExitCode::Success;
}

} // namespace brevint::cli
