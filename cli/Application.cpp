#include "cli/Application.h"

#include "cli/CommandLine.h"
#include "cli/Failure.h"
#include "cli/Utf8.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <filesystem>
#include <new>

namespace brevint::cli {

namespace {

/// Turns whatever a command throws into a Failure.
ExitCode RunCommand(Command& command, Context& context) {
    try {
        return command.Run(context);
    } catch (const Failure&) {
        throw;
    } catch (const std::filesystem::filesystem_error& error) {
        throw LocalFailure("\"" + PathToUtf8(error.path1()) + "\" cannot be used", error.code());
    } catch (const std::system_error& error) {
        throw LocalFailure("The system refused", error.code());
    } catch (const std::bad_alloc&) {
        throw Failure(ExitCode::LocalFile, "There is not enough memory.");
    }
}

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
        return RunCommand(*command, context);
    } catch (const Failure& failure) {
        const Output output(json);
        output.Report(failure);
        output.Document({{"error", ToJson(failure)}});
        return failure.exitCode;
    }
}

} // namespace brevint::cli
