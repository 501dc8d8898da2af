#include "cli/manual/ManPage.h"

#include "cli/commands/Commands.h"

#include <algorithm>
#include <string_view>
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

std::string OptionItem(const OptionRow& option) {
    std::string term;
    for (const std::string& name : option.OptionNames()) {
        term += (term.empty() ? "" : ", ") + Bold(name);
    }
    if (option.value.kind != Value::Kind::Nothing) {
        term += (term.empty() ? "" : " ") + Italic(option.value.name);
    }
    std::string description = std::string(option.meaning) + ".";
    if (option.value.kind == Value::Kind::Choice) {
        description += " One of: " + std::string(option.value.choices) + ".";
    }
    if (!option.isRequired && !option.Default().empty()) {
        description += " Unless given: " + option.Default();
    }
    return Item(term, description);
}

std::string OptionItems(const CommandRow& command) {
    std::string text;
    for (const OptionRow& option : command.options) {
        text += OptionItem(option);
    }
    return text;
}

std::string Document(std::string names) {
    std::erase(names, '`');
    return ".PP\nWith " + Bold("--json") + ":\n" + Escape(names) + ".\n";
}

std::string Examples(std::string_view examples) {
    return ".RS 4\n.nf\n" + Escape(examples) + ".fi\n.RE\n";
}

} // namespace

std::string ManPage() {
    std::string page =
        ".\\\" Made from the program's table of commands.\n"
        ".TH BREVINT 1 \"\" \"brevint " BREVINT_VERSION "\" \"User Commands\"\n"
        ".nh\n.ad l\n"
        ".SH NAME\nbrevint \\- work with a document repository from a terminal\n"
        ".SH SYNOPSIS\n" +
        Bold("brevint") + " [" + Italic("OPTION") + "]... " + Italic("COMMAND") + " [" +
        Italic("OPTION") + "]... [" + Italic("ARGUMENT") + "]...\n.SH DESCRIPTION\n" +
        Escape(kProgram.summary) +
        ".\n.PP\n"
        "An item is named by its identifier, or by its path if it begins with \"/\".\n"
        "Paths begin with the root folder, and names in them must match exactly.\n"
        "With several items each has an outcome of its own: a failure is reported,\n"
        "the next item is attempted, and the exit status is that of the first "
        "failure.\n"
        ".SH OPTIONS\nThese are taken by every command.\n" +
        OptionItems(kProgram) + ".SH COMMANDS\n";
    for (const CommandRow& command : AllCommands()) {
        page += ".SS " + std::string(command.name) + "\n" + Escape(command.Synopsis()) + "\n.PP\n" +
                Escape(command.summary) + ".\n" + Escape(command.notes) + OptionItems(command) +
                Document(command.document) + ".PP\nExamples:\n" + Examples(command.examples);
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
           Examples(kProgram.examples);
}

} // namespace brevint::cli
