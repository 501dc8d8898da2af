#include "cli/output/Output.h"

#include "cli/terminal/SafeText.h"
#include "cli/terminal/Terminal.h"

#include <nlohmann/json.hpp>

namespace brevint::cli {

namespace {

/// The text in the colour with that number (of ECMA-48), where the stream shows colours.
std::string Colour(Terminal::Stream stream, const char* number, const std::string& text) {
    return Terminal::HasColours(stream) ? "\x1b[" + std::string(number) + "m" + text + "\x1b[0m"
                                        : text;
}

// Blanks by which a level of JSON is indented.
constexpr int kIndented = 2;
constexpr int kOneLine = -1;

std::string JsonText(const nlohmann::json& document, int indentation) {
    return NeutraliseJson(
        document.dump(indentation, ' ', false, nlohmann::json::error_handler_t::replace));
}

constexpr char kBold[] = "1";
constexpr char kRed[] = "31";

} // namespace

void Output::Lines(const std::vector<std::string>& lines) const {
    if (m_json) {
        return;
    }
    std::string text;
    for (const std::string& line : lines) {
        text += Neutralise(line) + "\n";
    }
    Write(text);
}

void Output::Print(const Table& table) const {
    std::vector<std::string> lines = table.Lines();
    if (!m_json) {
        Write(Colour(Terminal::Stream::Output, kBold, lines.front()) + "\n");
    }
    lines.erase(lines.begin());
    Lines(lines);
}

void Output::Document(const nlohmann::json& document) const {
    if (m_json) {
        Write(JsonText(document, kIndented) + "\n");
    }
}

void Output::Report(const Failure& failure) const {
    if (m_events) {
        Event({{"event", "failure"}, {"error", ToJson(failure)}});
        return;
    }
    std::string text = Colour(Terminal::Stream::Error, kRed, "brevint:") + " " +
                       Neutralise(failure.summary) + "\n";
    if (!failure.serverWords.empty()) {
        text += "  The " + std::string(failure.speaker) + " says: \"" +
                Neutralise(failure.serverWords) + "\"\n";
    }
    if (failure.code != 0) {
        text += "  Code: " + std::to_string(failure.code) + " (" + failure.codeName + ")\n";
    }
    if (!failure.hint.empty()) {
        text += "  What to try: " + Neutralise(failure.hint) + "\n";
    }
    Draw(text);
}

void Output::Remark(const std::string& line) const {
    if (!m_events) {
        Draw(Neutralise(line) + "\n");
    }
}

void Output::Event(const nlohmann::json& event) const {
    if (m_events) {
        Draw(JsonText(event, kOneLine) + "\n");
    }
}

void Output::Draw(const std::string& text) const {
    Terminal::Tell(text, m_stop);
}

/// Standard output in the manner of every other file that cannot be written.
void Output::Write(const std::string& text) const {
    try {
        Terminal::Write(Terminal::Stream::Output, text, m_stop);
    } catch (const std::system_error& error) {
        if (error.code() == std::errc::operation_canceled) {
            throw OutputFailure({ExitCode::Interrupted, "Interrupted."});
        }
        throw OutputFailure(LocalFailure("The output cannot be written", error.code()));
    }
}

nlohmann::json ToJson(const Failure& failure) {
    nlohmann::json document = {{"message", failure.summary},
                               {"exitCode", static_cast<int>(failure.exitCode)}};
    if (!failure.serverWords.empty()) {
        document[failure.speaker] = failure.serverWords;
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
