#include "cli/manual/DocumentTables.h"

#include "cli/commands/Commands.h"

#include <regex>
#include <utility>
#include <vector>

namespace brevint::cli {

namespace {

std::string Code(std::string_view text) {
    return "`" + std::string(text) + "`";
}

/// Words with the options in them set as code, or else two hyphens would be shown as a dash.
std::string Prose(const std::string& text) {
    static const std::regex kOption("--[a-z][a-z-]*");
    return std::regex_replace(text, kOption, "`$&`");
}

/// A line of a table; "|" within a cell is escaped.
std::string Row(const std::vector<std::string>& cells) {
    std::string line = "|";
    for (const std::string& cell : cells) {
        line += " ";
        for (const char c : cell) {
            line += c == '|' ? "\\|" : c == '\n' ? " " : std::string(1, c);
        }
        line += " |";
    }
    return line + "\n";
}

std::string Heading(const std::vector<std::string>& cells) {
    std::string rule = "|";
    for (std::size_t i = 0; i < cells.size(); ++i) {
        rule += "---|";
    }
    return Row(cells) + rule + "\n";
}

/// "`-o`, `--output FILE`"
std::string OptionCell(const OptionRow& option) {
    std::string cell;
    for (const std::string& name : option.OptionNames()) {
        cell += (cell.empty() ? "`" : "`, `") + name;
    }
    return cell + (option.value.name[0] == '\0' ? "" : " ") + option.value.name + "`";
}

std::string MeaningCell(const OptionRow& option) {
    const std::string meaning = Prose(option.meaning);
    return option.isRequired || option.Default().empty()
               ? meaning
               : meaning + "; " + Code(option.Default()) + " unless given";
}

std::string CommandTable() {
    std::string table = Heading({"Command", "What it does"});
    for (const CommandRow& command : AllCommands()) {
        const std::string notes = Prose(command.notes);
        table += Row({Code(command.Synopsis()), std::string(command.summary) +
                                                    (notes.empty() ? "" : ". ") +
                                                    notes.substr(0, notes.rfind('.'))});
    }
    return table;
}

std::string ProgramOptionTable() {
    std::string table = Heading({"Option", "Meaning"});
    for (const OptionRow& option : kProgram.options) {
        table += Row({OptionCell(option), MeaningCell(option)});
    }
    return table;
}

std::string CommandOptionTable() {
    std::string table = Heading({"Command", "Option", "Meaning"});
    for (const CommandRow& command : AllCommands()) {
        for (const OptionRow& option : command.options) {
            if (!option.IsArgument()) {
                table += Row({Code(command.name), OptionCell(option), MeaningCell(option)});
            }
        }
    }
    return table;
}

std::string ExitCodeTable() {
    std::string table = Heading({"Code", "Meaning"});
    for (const ExitCodeRow& row : kExitCodes) {
        table += Row({std::to_string(static_cast<int>(row.code)), Prose(row.meaning)});
    }
    return table;
}

std::string JsonTable() {
    std::string table = Heading({"Command", "Document"});
    for (const CommandRow& command : AllCommands()) {
        table += Row({Code(command.name), command.document});
    }
    return table;
}

} // namespace

std::string DocumentTable(std::string_view name) {
    static constexpr std::pair<std::string_view, std::string (*)()> kTables[] = {
        {"commands", CommandTable},
        {"command-options", CommandOptionTable},
        {"program-options", ProgramOptionTable},
        {"exit-codes", ExitCodeTable},
        {"json", JsonTable},
    };
    for (const auto& [known, write] : kTables) {
        if (known == name) {
            return write();
        }
    }
    return {};
}

} // namespace brevint::cli
