#include "cli/manual/ManPage.h"

#include <iterator>
#include <sstream>
#include <utility>

namespace brevint::cli {

namespace {

constexpr std::pair<const char*, const char*> kEnvironment[] = {
    {"NO_COLOR", "No colours are used when this is set and not empty."},
    {"TERM", "No colours and no progress are shown on a terminal of the type \"dumb\"."},
    {"http_proxy, https_proxy, no_proxy", "The proxies to use, except on Windows."},
    {"XDG_STATE_HOME, HOME, LOCALAPPDATA", "Where the session is kept; see below."},
};

constexpr std::pair<const char*, const char*> kFiles[] = {
    {"$XDG_STATE_HOME/brevint/session.json", "The session, for its owner to read only."},
    {"~/.local/state/brevint/session.json", "The same, where XDG_STATE_HOME is not set."},
    {"%LOCALAPPDATA%\\Brevint\\session.json", "The same on Windows."},
};

/// Text in which roff finds nothing to obey.
std::string Escape(std::string_view text) {
    std::string escaped;
    for (const char c : text) {
        const bool atStart = escaped.empty() || escaped.back() == '\n';
        if (atStart && (c == '.' || c == '\'')) {
            escaped += "\\&";
        }
        if (c == '\\') {
            escaped += "\\e";
        } else if (c == '\'') {
            escaped += "\\(aq";
        } else if (std::string_view("-~^`").find(c) != std::string_view::npos) {
            escaped += c == '-' ? "\\-" : c == '~' ? "\\(ti" : c == '^' ? "\\(ha" : "\\(ga";
        } else {
            escaped += c;
        }
    }
    return escaped;
}

std::string Bold(std::string_view text) {
    return "\\fB" + Escape(text) + "\\fR";
}

std::string Italic(std::string_view text) {
    return "\\fI" + Escape(text) + "\\fR";
}

/// A term and what there is to say of it.
std::string Item(const std::string& term, std::string_view text) {
    return ".TP\n" + term + "\n" + Escape(text) + "\n";
}

std::string OptionItems(const std::vector<OptionEntry>& options) {
    std::string text;
    for (const OptionEntry& option : options) {
        std::string term;
        for (const std::string& name : option.names) {
            term += (term.empty() ? "" : ", ") + Bold(name);
        }
        if (!option.value.empty()) {
            term += (term.empty() ? "" : " ") + Italic(option.value);
        }
        std::string description = option.description + ".";
        if (!option.choices.empty()) {
            description += " One of:";
            for (const std::string& choice : option.choices) {
                description += " " + choice;
            }
            description += ".";
        }
        if (!option.defaultValue.empty()) {
            description += " Unless given: " + option.defaultValue;
        }
        text += Item(term, description);
    }
    return text;
}

std::string Synopsis(const CommandEntry& command) {
    std::string line = Bold(command.name) + " [" + Italic("OPTION") + "]...";
    for (const OptionEntry& option : command.options) {
        if (option.required) {
            line += " " + Bold(option.names.back()) + " " + Italic(option.value);
        }
    }
    for (const OptionEntry& argument : command.arguments) {
        const std::string text = Italic(argument.value) + (argument.repeated ? "..." : "");
        line += argument.required ? " " + text : " [" + text + "]";
    }
    return line;
}

std::string Examples(const std::string& examples) {
    return ".RS 4\n.nf\n" + Escape(examples) + ".fi\n.RE\n";
}

} // namespace

std::string ManPage(const std::vector<CommandEntry>& table) {
    const CommandEntry& program = table.front();
    std::string page =
        ".\\\" Made from the program's option table.\n"
        ".TH BREVINT 1 \"\" \"brevint " BREVINT_VERSION "\" \"User Commands\"\n"
        ".nh\n.ad l\n"
        ".SH NAME\nbrevint \\- work with a document repository from a terminal\n"
        ".SH SYNOPSIS\n" +
        Bold("brevint") + " [" + Italic("OPTION") + "]... " + Italic("COMMAND") + " [" +
        Italic("OPTION") + "]... [" + Italic("ARGUMENT") + "]...\n.SH DESCRIPTION\n" +
        Escape(program.summary) +
        "\n.PP\n"
        "An item is named by its identifier, or by its path if it begins with \"/\".\n"
        "Paths begin with the root folder, and names in them must match exactly.\n"
        "With several items each has an outcome of its own: a failure is reported,\n"
        "the next item is attempted, and the exit status is that of the first "
        "failure.\n"
        ".SH OPTIONS\nThese are taken by every command.\n" +
        OptionItems(program.options) + ".SH COMMANDS\n";
    for (auto command = std::next(table.begin()); command != table.end(); ++command) {
        page += ".SS " + command->name + "\n" + Synopsis(*command) + "\n.PP\n" +
                Escape(command->summary) + ".\n" + Escape(command->notes) +
                OptionItems(command->arguments) + OptionItems(command->options) +
                ".PP\nExamples:\n" + Examples(command->examples);
    }
    page += ".SH EXIT STATUS\n";
    for (const ExitCodeRow& row : kExitCodes) {
        page += Item(Bold(std::to_string(static_cast<int>(row.code))), row.meaning);
    }
    page += ".SH ENVIRONMENT\n";
    for (const auto& [name, meaning] : kEnvironment) {
        page += Item(Bold(name), meaning);
    }
    page += ".SH FILES\n";
    for (const auto& [name, meaning] : kFiles) {
        page += Item(Italic(name), meaning);
    }
    return page + ".SH EXAMPLES\nA session from the beginning to the end:\n" +
           Examples(program.examples);
}

} // namespace brevint::cli
