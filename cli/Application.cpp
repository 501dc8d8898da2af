#include "cli/Application.h"

#include "cli/Command.h"
#include "cli/Context.h"
#include "cli/Failure.h"
#include "cli/Terminal.h"
#include "cli/Utf8.h"

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <new>
#include <sstream>
#include <utility>

namespace brevint::cli {

namespace {

std::string DescribeExitCodes() {
    std::string text = "Exit codes:\n";
    for (const ExitCodeRow& row : kExitCodes) {
        text += "  " + std::to_string(static_cast<int>(row.code)) + "  " + row.meaning + "\n";
    }
    return text;
}

void AddGlobalOptions(CLI::App& app, Options& options) {
    app.add_option("--url", options.url,
                   "Address of the service; the one signed in to unless given")
        ->type_name("URL");
    app.add_option("--root", options.root, "Identifier of the folder that paths begin with")
        ->type_name("ID")
        ->capture_default_str();
    app.add_option("--timeout", options.timeoutSeconds,
                   "Longest time to wait for a transfer or a job, in seconds")
        ->type_name("SECONDS")
        ->capture_default_str();
    app.add_flag("--json", options.json, "Print one JSON document instead of text");
    app.add_flag("--insecure-http", options.insecureHttp,
                 "Allow http:// to other machines: password and content travel unencrypted");
}

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

ExitCode RunAndReport(Command& command, Options options) {
    Context context(std::move(options));
    try {
        return RunCommand(command, context);
    } catch (const Failure& failure) {
        context.Out().Report(failure);
        context.Out().Document({{"error", ToJson(failure)}});
        return failure.exitCode;
    }
}

} // namespace

ExitCode RunApplication(std::vector<std::string> arguments) {
    CLI::App app("Works with a document repository on a Brevint service.", "brevint");
    Options options;
    app.set_version_flag("--version", "brevint " BREVINT_VERSION);
    app.require_subcommand(1);
    // Options may follow the command, and "/Projects" is a path on every target.
    app.fallthrough();
    app.allow_windows_style_options(false);
    AddGlobalOptions(app, options);

    std::vector<std::pair<CLI::App*, std::unique_ptr<Command>>> commands;
    for (const CommandRow& row : AllCommands()) {
        commands.emplace_back(app.add_subcommand(row.name, row.summary), row.make());
        CLI::App& subcommand = *commands.back().first;
        commands.back().second->AddOptions(subcommand);
        subcommand.footer(subcommand.get_footer() +
                          "\nOptions of all commands, and exit codes: brevint --help");
    }
    app.footer(DescribeExitCodes());

    try {
        std::reverse(arguments.begin(), arguments.end()); // the order that CLI11 takes them in
        app.parse(std::move(arguments));
    } catch (const CLI::ParseError& result) {
        std::ostringstream out;
        std::ostringstream error;
        const bool failed = app.exit(result, out, error) != 0;
        Terminal::Write(Terminal::Stream::Output, out.str());
        Terminal::Write(Terminal::Stream::Error, error.str());
        return failed ? ExitCode::Usage : ExitCode::Success;
    }
    const auto chosen = std::find_if(commands.begin(), commands.end(),
                                     [](const auto& command) { return command.first->parsed(); });
    return RunAndReport(*chosen->second, std::move(options));
}

} // namespace brevint::cli
