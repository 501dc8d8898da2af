#include "brevint/IIdentityProxy.h"
#include "brevint/IdentityResponse.h"
#include "brevint/UserRole.h"
#include "cli/run/Context.h"
#include "support/Utf8.h"

#include <nlohmann/json.hpp>

namespace brevint::cli {

ExitCode RunWhoAmI(Context& context) {
    const std::string& url = context.TheSession().url;
    const auto response =
        context.TheService().Call(url + " does not tell who is signed in.", [](Service& service) {
            return service.Identity()->GetIdentity(service.Url());
        });
    const std::string user = Utf8::ToNarrow(response->GetUsername());
    const char* const role =
        response->GetUserRole() == UserRole::Administrator ? "administrator" : "user";
    context.Out().Line(user + " (" + role + ") at " + url);
    context.Out().Document({{"user", user},
                            {"role", role},
                            {"url", url},
                            {"portal", Utf8::ToNarrow(response->GetIdentifyingPartyUrl())}});
    return ExitCode::Success;
}

} // namespace brevint::cli
