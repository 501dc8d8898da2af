#include "brevint/VersionInfoResponse.h"
#include "brevint/VersionProxy.h"
#include "brevint/WebRequestFactory.h"
#include "cli/run/Context.h"
#include "support/Utf8.h"

#include <nlohmann/json.hpp>

namespace brevint::cli {

ExitCode RunVersions(Context& context) {
    const auto response = context.TheService().Call(
        context.TheSession().url + " does not tell its version.", [](Service& service) {
            WebRequestFactory factory;
            return CVersionProxy(&factory).GetVersionInfo(service.Url().c_str());
        });
    const std::string version = Utf8::ToNarrow(response->GetSystemVersion());
    std::vector<std::string> lines = {"Service: " + version};
    nlohmann::json desktop = nlohmann::json::array();
    for (const std::wstring& accepted : response->GetCompatableDesktopVersions()) {
        desktop.push_back(Utf8::ToNarrow(accepted));
        lines.push_back("Accepted desktop version: " + desktop.back().get<std::string>());
    }
    context.Out().Lines(lines);
    context.Out().Document({{"service", version}, {"desktop", std::move(desktop)}});
    return ExitCode::Success;
}

} // namespace brevint::cli
