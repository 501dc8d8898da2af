#include "cli/run/Context.h"

#include <nlohmann/json.hpp>

namespace brevint::cli {

ExitCode RunVersions(Context& context) {
    const Versions versions = context.Ask(
        context.TheSession().url + " does not tell its version.",
        [](Client& client, const CallOptions& limits) { return client.GetVersions(limits); });
    std::vector<std::string> lines = {"Service: " + versions.service};
    for (const std::string& accepted : versions.applications) {
        lines.push_back("Accepted desktop version: " + accepted);
    }
    context.Out().Lines(lines);
    context.Out().Document({{"service", versions.service}, {"desktop", versions.applications}});
    return ExitCode::Success;
}

} // namespace brevint::cli
