#include "cli/manual/Completions.h"

#include "cli/commands/Commands.h"

#include <algorithm>
#include <string_view>

namespace brevint::cli {

namespace {

bool TakesValue(const OptionRow& option) {
    return option.value.kind != Value::Kind::Nothing;
}

/// The names of the command's options, with a blank before each.
std::string Names(const CommandRow& command) {
    std::string names;
    for (const OptionRow& option : command.options) {
        for (const std::string& name : option.OptionNames()) {
            names += " " + name;
        }
    }
    return names;
}

bool TakesFiles(const CommandRow& command) {
    return std::ranges::any_of(command.options, [](const OptionRow& option) {
        return option.IsArgument() && option.value.kind == Value::Kind::File;
    });
}

/// The text between single quotes, in the way of the POSIX shell and, with a backslash, of fish.
std::string Quote(std::string_view text, const std::string& quote = "'\\''") {
    std::string quoted = "'";
    for (const char c : text) {
        quoted += c == '\'' ? quote : std::string(1, c);
    }
    return quoted + "'";
}

constexpr char kNote[] = "# Made from the table of commands of brevint.\n";

// bash

/// What bash does to complete a value, with the word typed so far in $word.
std::string BashValue(const Value& value) {
    switch (value.kind) {
    case Value::Kind::Choice:
        return "COMPREPLY=($(compgen -W '" + std::string(value.choices) + "' -- \"$word\"))";
    case Value::Kind::File: return "compopt -o default";
    case Value::Kind::Folder: return "compopt -o dirnames";
    default: return ":";
    }
}

/// What the completion for bash says of one command, or of the program.
struct BashParts {
    std::string skipped;    ///< " | --url": what a value follows.
    std::string valueCases; ///< Branches of a case over command and option whose value is to come.
};

void AddBashParts(BashParts& parts, const CommandRow& command, const std::string& pattern) {
    for (const OptionRow& option : command.options) {
        for (const std::string& name : option.OptionNames()) {
            if (TakesValue(option)) {
                parts.skipped += (parts.skipped.empty() ? "" : " | ") + name;
                parts.valueCases.append("        ").append(pattern).append("' ").append(name);
                parts.valueCases.append("') ").append(BashValue(option.value));
                parts.valueCases.append("; return ;;\n");
            }
        }
    }
}

// zsh

/// Text within what _arguments takes for an option, where brackets and colons mean something.
std::string ZshText(std::string_view text) {
    std::string escaped;
    for (const char c : text) {
        if (std::string_view("[]:\\").find(c) != std::string_view::npos) {
            escaped += '\\';
        }
        escaped += c;
    }
    return escaped;
}

/// ":what:how to complete it" of an option's value or an argument.
std::string ZshValue(const Value& value) {
    const std::string start = ":" + std::string(value.name) + ":";
    switch (value.kind) {
    case Value::Kind::Choice: return start + "(" + value.choices + ")";
    case Value::Kind::File: return start + "_files";
    case Value::Kind::Folder: return start + "_files -/";
    default: return start + " ";
    }
}

/// What _arguments is given, one a line.
std::string ZshOptions(const CommandRow& command) {
    std::string text;
    for (const OptionRow& option : command.options) {
        if (option.IsArgument()) {
            text +=
                "    " + Quote((option.IsRepeated() ? "*" : "") + ZshValue(option.value)) + "\n";
        }
        std::string names = option.names;
        std::ranges::replace(names, ',', ' ');
        for (const std::string& name : option.OptionNames()) {
            std::string rule = "(";
            rule.append(names).append(")").append(name);
            if (TakesValue(option)) {
                rule += name.starts_with("--") ? '=' : '+';
            }
            rule.append("[").append(ZshText(option.meaning)).append("]");
            if (TakesValue(option)) {
                rule += ZshValue(option.value);
            }
            text.append("    ").append(Quote(rule)).append("\n");
        }
    }
    return text;
}

// fish

std::string FishValue(const Value& value) {
    switch (value.kind) {
    case Value::Kind::Nothing: return "";
    case Value::Kind::Any: return " -x";
    case Value::Kind::File: return " -rF";
    case Value::Kind::Folder: return " -xa '(__fish_complete_directories)'";
    case Value::Kind::Choice: break;
    }
    return " -xa " + Quote(value.choices);
}

std::string FishOptions(const CommandRow& command, const std::string& start) {
    std::string text;
    for (const OptionRow& option : command.options) {
        if (option.IsArgument()) {
            continue;
        }
        text += start;
        for (const std::string& name : option.OptionNames()) {
            text += name.starts_with("--") ? " -l " + name.substr(2) : " -s " + name.substr(1);
        }
        text += FishValue(option.value) + " -d " + Quote(option.meaning, "\\'") + "\n";
    }
    return text;
}

} // namespace

std::string BashCompletion() {
    BashParts parts;
    std::string wordCases;
    std::string commands;
    AddBashParts(parts, kProgram, "*");
    for (const CommandRow& command : AllCommands()) {
        AddBashParts(parts, command, command.name);
        commands += " " + std::string(command.name);
        wordCases += "        " + std::string(command.name) + ") options+='" + Names(command) +
                     "'" + (TakesFiles(command) ? "; compopt -o default" : "") + " ;;\n";
    }
    return kNote + std::string(R"(_brevint() {
    local word=${COMP_WORDS[COMP_CWORD]} option=${COMP_WORDS[COMP_CWORD - 1]} command='' i
    # Readline takes "=" and ":" for words of their own.
    if [[ $word == = ]]; then
        word=
    elif [[ $option == = ]]; then
        option=${COMP_WORDS[COMP_CWORD - 2]}
    fi
    for ((i = 1; i < COMP_CWORD; i++)); do
        case ${COMP_WORDS[i]} in
        )") +
           parts.skipped +
           R"()
            [[ ${COMP_WORDS[++i]} == = ]] && ((i++))
            while [[ ${COMP_WORDS[i + 1]} == : ]]; do ((i += 2)); done ;;
        -*) ;;
        *) command=${COMP_WORDS[i]}; break ;;
        esac
    done
    COMPREPLY=()
    case "$command $option" in
)" + parts.valueCases +
           R"(    esac
    local options=')" +
           Names(kProgram) + R"('
    case $command in
        '') options+=')" +
           commands + R"(' ;;
)" + wordCases +
           R"(    esac
    if [[ -z $command || $word == -* ]]; then
        COMPREPLY=($(compgen -W "$options" -- "$word"))
    fi
}
complete -F _brevint brevint
)";
}

std::string ZshCompletion() {
    std::string commands;
    std::string cases;
    for (const CommandRow& command : AllCommands()) {
        const std::string name = command.name;
        commands += "    " + Quote(name + ":" + ZshText(command.summary)) + "\n";
        cases += "    " + name + ")\n        rules+=(\n" + ZshOptions(command) + "        ) ;;\n";
    }
    return "#compdef brevint\n" + std::string(kNote) +
           "local curcontext=$curcontext state line context\ntypeset -A opt_args\n"
           "local -a commands rules\ncommands=(\n" +
           commands + ")\nrules=(\n" + ZshOptions(kProgram) +
           ")\n_arguments -C -S $rules ':command:->command' '*::argument:->argument'\n"
           "case $state in\n"
           "command) _describe command commands ;;\n"
           "argument)\n    case $words[1] in\n" +
           cases + "    esac\n    _arguments -S $rules ;;\nesac\n";
}

std::string FishCompletion() {
    const std::string start = "complete -c brevint";
    std::string text = kNote + start + " -f\n" + FishOptions(kProgram, start);
    for (const CommandRow& command : AllCommands()) {
        const std::string within =
            start + " -n " + Quote("__fish_seen_subcommand_from " + std::string(command.name));
        text += start + " -n __fish_use_subcommand -a " + command.name + " -d " +
                Quote(command.summary, "\\'") + "\n" + FishOptions(command, within);
        if (TakesFiles(command)) {
            text += within + " -F\n";
        }
    }
    return text;
}

} // namespace brevint::cli
