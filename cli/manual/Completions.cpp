#include "cli/manual/Completions.h"

#include <algorithm>
#include <iterator>
#include <span>

namespace brevint::cli {

namespace {

std::string Join(const std::vector<std::string>& words, const std::string& separator) {
    std::string joined;
    for (const std::string& word : words) {
        joined += (joined.empty() ? "" : separator) + word;
    }
    return joined;
}

/// The names of the options, only of those that take a value when `withValue`.
std::vector<std::string> Names(const std::vector<OptionEntry>& options, bool withValue = false) {
    std::vector<std::string> names;
    for (const OptionEntry& option : options) {
        if (!withValue || !option.value.empty()) {
            names.insert(names.end(), option.names.begin(), option.names.end());
        }
    }
    return names;
}

std::span<const CommandEntry> Commands(const std::vector<CommandEntry>& table) {
    return std::span(table).subspan(1);
}

/// The text between single quotes, in the way of the POSIX shell and, with a backslash, of fish.
std::string Quote(std::string_view text, const std::string& quote = "'\\''") {
    std::string quoted = "'";
    for (const char c : text) {
        quoted += c == '\'' ? quote : std::string(1, c);
    }
    return quoted + "'";
}

constexpr char kNote[] = "# Made from the option table of brevint.\n";

// bash

/// What bash does to complete a value, with the word typed so far in $word.
std::string BashValue(const OptionEntry& option) {
    if (!option.choices.empty()) {
        return "COMPREPLY=($(compgen -W '" + Join(option.choices, " ") + "' -- \"$word\"))";
    }
    if (option.value == kFileType) {
        return "compopt -o default";
    }
    return option.value == kFolderType ? "compopt -o dirnames" : ":";
}

/// The branches of a case over command and option whose value is to come.
std::string BashValueCases(const CommandEntry& command, const std::string& pattern) {
    std::string cases;
    for (const OptionEntry& option : command.options) {
        for (const std::string& name : option.names) {
            if (!option.value.empty()) {
                cases += "        " + pattern + "' " + name + "') " + BashValue(option) +
                         "; return ;;\n";
            }
        }
    }
    return cases;
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
std::string ZshValue(const OptionEntry& option) {
    std::string action = " ";
    if (!option.choices.empty()) {
        action = "(" + Join(option.choices, " ") + ")";
    } else if (option.value == kFileType) {
        action = "_files";
    } else if (option.value == kFolderType) {
        action = "_files -/";
    }
    return ":" + option.value + ":" + action;
}

/// What _arguments is given, one a line.
std::string ZshOptions(const std::vector<OptionEntry>& options) {
    std::string text;
    for (const OptionEntry& option : options) {
        for (const std::string& name : option.names) {
            const char* const joined = option.value.empty()     ? ""
                                       : name.starts_with("--") ? "="
                                                                : "+";
            text += "    " +
                    Quote("(" + Join(option.names, " ") + ")" + name + joined + "[" +
                          ZshText(option.description) + "]" +
                          (option.value.empty() ? "" : ZshValue(option))) +
                    "\n";
        }
    }
    return text;
}

// fish

std::string FishOptions(const std::vector<OptionEntry>& options, const std::string& start) {
    std::string text;
    for (const OptionEntry& option : options) {
        text += start;
        for (const std::string& name : option.names) {
            text += name.starts_with("--") ? " -l " + name.substr(2) : " -s " + name.substr(1);
        }
        if (option.value == kFileType) {
            text += " -rF";
        } else if (option.value == kFolderType) {
            text += " -xa '(__fish_complete_directories)'";
        } else if (!option.value.empty()) {
            text += " -x" + (option.choices.empty() ? std::string()
                                                    : "a " + Quote(Join(option.choices, " ")));
        }
        text += " -d " + Quote(option.description, "\\'") + "\n";
    }
    return text;
}

bool TakesFiles(const CommandEntry& command) {
    return std::any_of(command.arguments.begin(), command.arguments.end(),
                       [](const OptionEntry& argument) { return argument.value == kFileType; });
}

} // namespace

std::string BashCompletion(const std::vector<CommandEntry>& table) {
    const CommandEntry& program = table.front();
    std::string skipped;
    std::string valueCases;
    std::string wordCases;
    std::vector<std::string> commands;
    for (const CommandEntry& command : table) {
        for (const std::string& name : Names(command.options, true)) {
            skipped += (skipped.empty() ? "" : " | ") + name;
        }
        valueCases += BashValueCases(command, &command == &program ? "*" : command.name);
    }
    for (const CommandEntry& command : Commands(table)) {
        commands.push_back(command.name);
        wordCases += "        " + command.name + ") options+=' " +
                     Join(Names(command.options), " ") + "'" +
                     (TakesFiles(command) ? "; compopt -o default" : "") + " ;;\n";
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
           skipped +
           R"()
            [[ ${COMP_WORDS[++i]} == = ]] && ((i++))
            while [[ ${COMP_WORDS[i + 1]} == : ]]; do ((i += 2)); done ;;
        -*) ;;
        *) command=${COMP_WORDS[i]}; break ;;
        esac
    done
    COMPREPLY=()
    case "$command $option" in
)" + valueCases +
           R"(    esac
    local options=')" +
           Join(Names(program.options), " ") + R"('
    case $command in
        '') options+=' )" +
           Join(commands, " ") + R"(' ;;
)" + wordCases +
           R"(    esac
    if [[ -z $command || $word == -* ]]; then
        COMPREPLY=($(compgen -W "$options" -- "$word"))
    fi
}
complete -F _brevint brevint
)";
}

std::string ZshCompletion(const std::vector<CommandEntry>& table) {
    std::string commands;
    std::string cases;
    for (const CommandEntry& command : Commands(table)) {
        commands += "    " + Quote(command.name + ":" + ZshText(command.summary)) + "\n";
        cases += "    " + command.name + ")\n        rules+=(\n" + ZshOptions(command.options);
        for (const OptionEntry& argument : command.arguments) {
            cases += "    " + Quote((argument.repeated ? "*" : "") + ZshValue(argument)) + "\n";
        }
        cases += "        ) ;;\n";
    }
    return "#compdef brevint\n" + std::string(kNote) +
           "local curcontext=$curcontext state line context\ntypeset -A opt_args\n"
           "local -a commands rules\ncommands=(\n" +
           commands + ")\nrules=(\n" + ZshOptions(table.front().options) +
           ")\n_arguments -C -S $rules ':command:->command' '*::argument:->argument'\n"
           "case $state in\n"
           "command) _describe command commands ;;\n"
           "argument)\n    case $words[1] in\n" +
           cases + "    esac\n    _arguments -S $rules ;;\nesac\n";
}

std::string FishCompletion(const std::vector<CommandEntry>& table) {
    const std::string start = "complete -c brevint";
    std::string text = kNote + start + " -f\n" + FishOptions(table.front().options, start);
    for (const CommandEntry& command : Commands(table)) {
        const std::string within =
            start + " -n " + Quote("__fish_seen_subcommand_from " + command.name);
        text += start + " -n __fish_use_subcommand -a " + command.name + " -d " +
                Quote(command.summary, "\\'") + "\n" + FishOptions(command.options, within);
        if (TakesFiles(command)) {
            text += within + " -F\n";
        }
    }
    return text;
}

} // namespace brevint::cli
