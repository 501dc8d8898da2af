#include "cli/app/Application.h"

#include "cli/app/CommandLine.h"
#include "cli/output/Failure.h"

#include <nlohmann/json.hpp>

#include <algorithm>

namespace brevint::cli {

namespace {

/// Whether JSON is wanted, as far as a command line tells that cannot be read.
bool AsksForJson(const std::vector<std::string>& arguments) {
    const auto end = std::find(arguments.begin(), arguments.end(), "--");
    return std::find(arguments.begin(), end, "--json") != end;
}

} // namespace

ExitCode RunApplication(const std::vector<std::string>& arguments) {
    bool json = AsksForJson(arguments);
    try {
        CommandLine commandLine;
        Command* const command = commandLine.Parse(arguments);
        if (!command) {
            return ExitCode::Success;
        }
        json = commandLine.Settings().json;
        Context context(commandLine.Settings());
        return command->Run(context);
    } catch (...) {
        const Failure failure = CurrentFailure();
        const Output output(json);
        output.Report(failure);
        output.Document({{"error", ToJson(failure)}});
        return failure.exitCode;
    }
}

} // namespace brevint::cli
