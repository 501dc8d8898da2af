// The one source that includes CLI11, whose templates take seconds to compile: the grammar of the
// command line, the options that commands add to it, and the table that is read from it.

#include "cli/app/CommandLine.h"

#include "cli/commands/OptionTable.h"
#include "cli/output/Failure.h"
#include "cli/terminal/Terminal.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <sstream>
#include <utility>

namespace brevint::cli {

const char kExamples[] = "brevint sign-in --url https://host/app --user ada\n"
                         "brevint ls /Projects\n"
                         "brevint get /Projects/2026/Plan.xlsx\n"
                         "brevint put Report.pdf --to /Projects/2026\n"
                         "brevint sign-out\n";

namespace {

/// The examples and what follows them in every help text.
std::string Footer(std::string_view examples) {
    std::string text = "Examples:\n";
    std::istringstream lines{std::string(examples)};
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

void AddGlobalOptions(CLI::App& app, Options& options) {
    app.add_option("--url", options.url,
                   "Address of the service; the one signed in to unless given")
        ->type_name("URL");
    app.add_option("--root", options.root, "Identifier of the folder that paths begin with")
        ->type_name("ID")
        ->capture_default_str();
    app.add_option("--timeout", options.timeoutSeconds,
                   "Longest time to wait for a call, a transfer or a job, in seconds")
        ->type_name("SECONDS")
        ->check(
            CLI::Range(std::uint32_t{1}, std::numeric_limits<std::uint32_t>::max()).description(""))
        ->capture_default_str();
    app.add_flag("--json", options.json, "Print one JSON document instead of text");
    app.add_flag("--insecure-http", options.insecureHttp,
                 "Allow http:// to other machines: password and content travel unencrypted");
}

OptionEntry ReadOption(const CLI::Option& option) {
    OptionEntry entry;
    for (const std::string& name : option.get_snames()) {
        entry.names.push_back("-" + name);
    }
    for (const std::string& name : option.get_lnames()) {
        entry.names.push_back("--" + name);
    }
    if (option.get_type_size() != 0) {
        // The type, a colon, and what is checked: "COMMAND:{put,replace}".
        const std::string type = option.get_type_name();
        entry.value = type.substr(0, type.find(':'));
        const std::size_t brace = type.find('{');
        if (brace != std::string::npos) {
            std::istringstream list(type.substr(brace + 1, type.find('}') - brace - 1));
            for (std::string choice; std::getline(list, choice, ',');) {
                entry.choices.push_back(choice);
            }
        }
    }
    entry.defaultValue = option.get_default_str();
    entry.description = option.get_description();
    entry.required = option.get_required();
    entry.repeated = option.get_expected_max() > 1;
    return entry;
}

CommandEntry ReadCommand(const CLI::App& app) {
    CommandEntry entry;
    entry.name = app.get_name();
    entry.summary = app.get_description();
    for (const CLI::Option* option : app.get_options()) {
        // What every command takes stands with the program.
        if (option == app.get_help_ptr() && app.get_parent()) {
            continue;
        }
        (option->get_positional() ? entry.arguments : entry.options).push_back(ReadOption(*option));
    }
    return entry;
}

} // namespace

void OptionList::Required(const std::string& names, std::string& value, const std::string& type,
                          const std::string& description) {
    m_app.add_option(names, value, description)->type_name(type)->required();
}

void OptionList::Required(const std::string& names, std::vector<std::string>& values,
                          const std::string& type, const std::string& description) {
    m_app.add_option(names, values, description)->type_name(type)->required();
}

void OptionList::Optional(const std::string& names, std::string& value, const std::string& type,
                          const std::string& description) {
    m_app.add_option(names, value, description)->type_name(type)->capture_default_str();
}

void OptionList::Choice(const std::string& names, std::string& value, const std::string& type,
                        const std::vector<std::string>& choices, const std::string& description) {
    m_app.add_option(names, value, description)
        ->type_name(type)
        ->check(CLI::IsMember(choices))
        ->capture_default_str();
}

void OptionList::Flag(const std::string& names, bool& value, const std::string& description) {
    m_app.add_flag(names, value, description);
}

void OptionList::Exclude(const std::string& one, const std::string& other) {
    m_app.get_option(one)->excludes(m_app.get_option(other));
}

CommandLine::CommandLine()
    : m_app(std::make_unique<CLI::App>("Works with a document repository on a Brevint service.",
                                       "brevint")) {
    m_app->set_version_flag("--version", "brevint " BREVINT_VERSION, "Print the version and exit");
    m_app->set_help_flag("-h,--help", "Print a help text and exit");
    m_app->require_subcommand(1);
    // Options may follow the command, and "/Projects" is a path on every target.
    m_app->fallthrough();
    m_app->allow_windows_style_options(false);
    AddGlobalOptions(*m_app, m_options);
    for (const CommandRow& row : AllCommands()) {
        CLI::App& command = *m_app->add_subcommand(row.name, row.summary);
        m_commands.push_back(row.make());
        OptionList options(command);
        m_commands.back()->AddOptions(options);
        const std::string notes = row.notes;
        command.footer(notes + (notes.empty() ? "" : "\n") +
                       "Options of all commands: brevint --help\n\n" + Footer(row.examples));
    }
    m_app->footer("Options and examples of a command: brevint COMMAND --help\n\n" +
                  Footer(kExamples));
}

CommandLine::~CommandLine() = default;

Command* CommandLine::Parse(std::vector<std::string> arguments) {
    try {
        std::reverse(arguments.begin(), arguments.end()); // the order that CLI11 takes them in
        m_app->parse(std::move(arguments));
    } catch (const CLI::ParseError& result) {
        std::ostringstream out;
        std::ostringstream error;
        if (m_app->exit(result, out, error) == 0) {
            Terminal::Write(Terminal::Stream::Output, out.str());
            return nullptr;
        }
        const auto chosen = m_app->get_subcommands();
        const std::string command = chosen.empty() ? "" : chosen.front()->get_name() + " ";
        std::string summary = std::string(result.what()) + ".";
        if (chosen.empty() && m_app->remaining_size() > 0) {
            summary = "There is no command or option \"" + m_app->remaining().front() + "\".";
        }
        throw Failure(ExitCode::Usage, summary, "brevint " + command + "--help");
    }
    const auto rows = AllCommands();
    const auto chosen = std::find_if(rows.begin(), rows.end(), [this](const CommandRow& row) {
        return m_app->got_subcommand(row.name);
    });
    return m_commands[static_cast<std::size_t>(chosen - rows.begin())].get();
}

std::vector<CommandEntry> ReadOptionTable(const CommandLine& commandLine) {
    const CLI::App& grammar = commandLine.Grammar();
    std::vector<CommandEntry> table = {ReadCommand(grammar)};
    table.front().examples = kExamples;
    for (const CommandRow& row : AllCommands()) {
        table.push_back(ReadCommand(*grammar.get_subcommand(row.name)));
        table.back().notes = row.notes;
        table.back().examples = row.examples;
    }
    return table;
}

} // namespace brevint::cli
