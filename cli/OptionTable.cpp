#include "cli/OptionTable.h"

#include <CLI/CLI.hpp>

#include <sstream>

namespace brevint::cli {

namespace {

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
