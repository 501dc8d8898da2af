#include "cli/Output.h"

#include "cli/SafeText.h"
#include "cli/Terminal.h"

#include <nlohmann/json.hpp>

namespace brevint::cli {

namespace {

/// Standard output in the manner of every other file that cannot be written.
void Print(const std::string& text) {
    try {
        Terminal::Write(Terminal::Stream::Output, text);
    } catch (const std::system_error& error) {
        throw LocalFailure("The output cannot be written", error.code());
    }
}

} // namespace

void Output::Lines(const std::vector<std::string>& lines) const {
    if (json_) {
        return;
    }
    std::string text;
    for (const std::string& line : lines) {
        text += Neutralise(line) + "\n";
    }
    Print(text);
}

void Output::Document(const nlohmann::json& document) const {
    if (json_) {
        Print(
            NeutraliseJson(document.dump(2, ' ', false, nlohmann::json::error_handler_t::replace)) +
            "\n");
    }
}

void Output::Report(const Failure& failure) const {
    std::string text = "brevint: " + Neutralise(failure.summary) + "\n";
    if (!failure.serverWords.empty()) {
        text += "  The service says: " + Neutralise(failure.serverWords) + "\n";
    }
    if (failure.code != 0) {
        text += "  Code: " + std::to_string(failure.code) + " (" + failure.codeName + ")\n";
    }
    if (!failure.hint.empty()) {
        text += "  What to try: " + Neutralise(failure.hint) + "\n";
    }
    Terminal::Write(Terminal::Stream::Error, text);
}

nlohmann::json ToJson(const Failure& failure) {
    nlohmann::json document = {{"message", failure.summary},
                               {"exitCode", static_cast<int>(failure.exitCode)}};
    if (!failure.serverWords.empty()) {
        document["service"] = failure.serverWords;
    }
    if (failure.code != 0) {
        document["code"] = failure.code;
        document["name"] = failure.codeName;
    }
    if (!failure.hint.empty()) {
        document["hint"] = failure.hint;
    }
    return document;
}

} // namespace brevint::cli
