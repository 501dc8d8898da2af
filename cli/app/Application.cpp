#include "cli/app/Application.h"

#include "cli/app/CommandLine.h"
#include "cli/output/Failure.h"
#include "cli/run/Context.h"

#include <nlohmann/json.hpp>

#include <algorithm>

namespace brevint::cli {

namespace {

/// Whether an option is given, as far as a command line tells that cannot be read.
bool AsksFor(const std::vector<std::string>& arguments, const char* option) {
    const auto end = std::ranges::find(arguments, "--");
    return std::find(arguments.begin(), end, option) != end;
}

} // namespace

ExitCode RunApplication(const std::vector<std::string>& arguments) {
    Output output(AsksFor(arguments, "--json"), AsksFor(arguments, "--events"));
    try {
        const std::optional<Request> request = ParseCommandLine(arguments);
        if (!request) {
            return ExitCode::Success;
        }
        Context context(request->options);
        output = context.Out();
        return request->command.run(context);
    } catch (const OutputFailure& failure) {
        output.Report(failure); // and no document after what there is of another
        return failure.exitCode;
    } catch (...) {
        const Failure failure = CurrentFailure();
        output.Report(failure);
        try {
            output.Document({{"error", ToJson(failure)}});
        } catch (const OutputFailure&) {
            return failure.exitCode;
        }
        return failure.exitCode;
    }
}

} // namespace brevint::cli
