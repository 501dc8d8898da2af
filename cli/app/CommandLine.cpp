// The one source that includes CLI11, whose templates take seconds to compile.

#include "cli/app/CommandLine.h"

#include "cli/output/Failure.h"
#include "cli/terminal/Terminal.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <sstream>
#include <string_view>
#include <type_traits>
#include <utility>

namespace brevint::cli {

namespace {

/// The examples and what follows them in every help text.
std::string Footer(const CommandRow& command) {
    std::string text = "Examples:\n";
    std::istringstream lines(command.examples);
    for (std::string line; std::getline(lines, line);) {
        text += "  " + line + "\n";
    }
    text += "\nExit codes:\n";
    for (const ExitCodeRow& row : kExitCodes) {
        const std::string code = std::to_string(static_cast<int>(row.code));
        text += std::string(5 - code.size(), ' ') + code + "  " + row.meaning + "\n";
    }
    return text;
}

CLI::Option* AddValue(CLI::App& app, const OptionRow& row, auto& variable) {
    CLI::Option* const option = app.add_option(row.names, variable, row.meaning);
    option->type_name(row.value.name)->required(row.isRequired);
    if (!row.isRequired) {
        option->capture_default_str();
    }
    if (row.value.kind == Value::Kind::Choice) {
        option->check(CLI::IsMember(row.Choices()));
    }
    if constexpr (std::is_same_v<decltype(variable), std::uint32_t&>) {
        constexpr std::uint32_t kMost = std::numeric_limits<std::uint32_t>::max();
        option->check(CLI::Range(std::uint32_t{1}, kMost).description(""));
    }
    return option;
}

CLI::Option* AddOption(CLI::App& app, const OptionRow& row, Options& options) {
    return std::visit(
        [&](auto effect) {
            using Effect = decltype(effect);
            if constexpr (std::is_same_v<Effect, ShowsHelp>) {
                return app.set_help_flag(row.names, row.meaning);
            } else if constexpr (std::is_same_v<Effect, ShowsVersion>) {
                return app.set_version_flag(row.names, "brevint " BREVINT_VERSION, row.meaning);
            } else if constexpr (std::is_same_v<Effect, bool Options::*>) {
                return app.add_flag(row.names, options.*effect, row.meaning);
            } else {
                return AddValue(app, row, options.*effect);
            }
        },
        row.effect);
}

void AddOptions(CLI::App& app, const CommandRow& command, Options& options) {
    for (const OptionRow& row : command.options) {
        CLI::Option* const option = AddOption(app, row, options);
        if (row.excludes[0] != '\0') {
            option->excludes(app.get_option(row.excludes));
        }
    }
}

} // namespace

std::optional<Request> ParseCommandLine(std::vector<std::string> arguments) {
    Options options;
    CLI::App app(std::string(kProgram.summary) + ".", kProgram.name);
    app.require_subcommand(1);
    // Options may follow the command, and "/Projects" is a path on every target.
    app.fallthrough();
    app.allow_windows_style_options(false);
    app.footer("Options and examples of a command: brevint COMMAND --help\n\n" + Footer(kProgram));
    AddOptions(app, kProgram, options);
    for (const CommandRow& row : AllCommands()) {
        CLI::App& command = *app.add_subcommand(row.name, row.summary);
        AddOptions(command, row, options);
        const std::string notes = row.notes;
        command.footer(notes + (notes.empty() ? "" : "\n") +
                       "Options of all commands: brevint --help\n\n" + Footer(row));
    }
    try {
        std::ranges::reverse(arguments); // the order that CLI11 takes them in
        app.parse(std::move(arguments));
    } catch (const CLI::ParseError& result) {
        std::ostringstream out;
        std::ostringstream error;
        if (app.exit(result, out, error) == 0) {
            Terminal::Write(Terminal::Stream::Output, out.str());
            return std::nullopt;
        }
        const auto chosen = app.get_subcommands();
        const std::string command = chosen.empty() ? "" : chosen.front()->get_name() + " ";
        std::string summary = std::string(result.what()) + ".";
        if (chosen.empty() && app.remaining_size() > 0) {
            summary = "There is no command or option \"" + app.remaining().front() + "\".";
        }
        throw Failure(ExitCode::Usage, summary, "brevint " + command + "--help");
    }
    const auto chosen = std::ranges::find_if(
        AllCommands(), [&app](const CommandRow& row) { return app.got_subcommand(row.name); });
    return Request{*chosen, std::move(options)};
}

} // namespace brevint::cli
