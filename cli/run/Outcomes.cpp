#include "cli/run/Outcomes.h"

#include "cli/output/Failure.h"

#include <utility>

namespace brevint::cli {

ExitCode ForEachItem(Context& context, const std::vector<std::string>& items,
                     const std::function<Outcome(const std::string&)>& work) {
    ExitCode result = ExitCode::Success;
    nlohmann::json results = nlohmann::json::array();
    for (const std::string& item : items) {
        nlohmann::json document = {{"item", item}, {"ok", true}};
        ExitCode exitCode = ExitCode::Success;
        try {
            Outcome outcome = work(item);
            if (!outcome.line.empty()) {
                context.Out().Line(outcome.line);
            }
            document.update(outcome.document);
        } catch (...) {
            const Failure failure = CurrentFailure();
            context.Out().Report(failure);
            exitCode = failure.exitCode;
            document["ok"] = false;
            document["error"] = ToJson(failure);
        }
        results.push_back(std::move(document));
        if (result == ExitCode::Success || exitCode == ExitCode::Interrupted) {
            result = exitCode;
        }
        if (exitCode == ExitCode::Interrupted) {
            break;
        }
    }
    context.Out().Document({{"results", std::move(results)}});
    return result;
}

} // namespace brevint::cli
