#include "service/OptionTable.h"

#include "service/ReferenceService.h"
#include "service/Text.h"

#include <limits>
#include <regex>
#include <stdexcept>

namespace brevint::service {

namespace {

void AddPatternFile(ServiceOptions& options, const std::string& text) {
    const auto equals = text.rfind('=');
    if (equals == 0 || equals == std::string::npos) {
        throw std::invalid_argument("expected NAME=BYTES");
    }
    options.patternFiles.emplace_back(text.substr(0, equals), ReadNumber(text.substr(equals + 1)));
}

template <class Value>
void SetNumber(Value& field, const std::string& text) {
    field = static_cast<Value>(ReadNumber(text, std::numeric_limits<Value>::max()));
}

constexpr OptionRow kRows[] = {
    {"--port", "N", "Port to listen on; 0, the default, lets the system choose", false,
     [](ServiceOptions& options, const std::string& text) {
         SetNumber(options.http.port, text);
     }},
    {"--chunked", "", "Every download is sent in chunks, without its length", false,
     [](ServiceOptions& options, const std::string&) {
         options.chunkedDownloads = true;
     }},
    {"--job-polls", "N",
     "How many polls find a job unfinished; 2 unless given, with 0 a job is done at once", false,
     [](ServiceOptions& options, const std::string& text) {
         SetNumber(options.unfinishedPolls, text);
     }},
    {"--many", "N", "Adds a folder \"Many\" with N small files", false,
     [](ServiceOptions& options, const std::string& text) {
         SetNumber(options.manyFiles, text);
     }},
    {"--add-file", "NAME=BYTES",
     "Adds a file to the projects; its bytes follow a fixed pattern and take no memory", true,
     AddPatternFile},
    {"--max-upload", "BYTES", "The longest body of an upload; 64 GiB unless given", false,
     [](ServiceOptions& options, const std::string& text) {
         SetNumber(options.http.maxStreamedBody, text);
     }},
    {"--misbehave", "HOW", "Does something wrong on purpose with the content of files; see below",
     true,
     [](ServiceOptions& options, const std::string& text) {
         ReadMisbehaviour(text, options.misbehaviour);
     }},
};

std::string DocumentedOptions() {
    std::string table = "| Option | Meaning |\n|---|---|\n";
    for (const OptionRow& row : kRows) {
        const std::string blank = *row.value ? " " : "";
        table += "| `" + (row.name + blank + row.value) + "` | " + row.meaning +
                 (row.repeated ? "; may be given several times |\n" : " |\n");
    }
    return table + "| `--help`, `--version` | Prints a help text or the version, and ends |\n";
}

std::string DocumentedMisbehaviour() {
    std::string table = "| `--misbehave` | Meaning |\n|---|---|\n";
    for (const MisbehaviourRow& row : AllMisbehaviours()) {
        table.append("| `").append(row.name).append(row.value.empty() ? "" : "=");
        table.append(row.value).append("` | ").append(row.meaning).append(" |\n");
    }
    return table;
}

std::string DocumentedResources() {
    std::string table = "| Request | Reply, below `ResponseData` |\n|---|---|\n";
    for (const Resource& row : ReferenceService().Resources()) {
        if (row.access == Access::SignedIn) {
            const std::string address(row.pattern);
            table.append("| `").append(row.method).append(" /");
            table.append(std::regex_replace(address, std::regex("[{]id[}]"), "ID"));
            table.append(row.request.empty() ? "`" : "` with ").append(row.request);
            table.append(" | ").append(row.reply).append(" |\n");
        }
    }
    return table;
}

} // namespace

std::span<const OptionRow> AllOptions() {
    return kRows;
}

std::string DocumentedTable(const std::string& name) {
    if (name == "options") {
        return DocumentedOptions();
    }
    if (name == "misbehaviour") {
        return DocumentedMisbehaviour();
    }
    if (name == "resources") {
        return DocumentedResources();
    }
    throw std::invalid_argument("there is no such table");
}

} // namespace brevint::service
