#include "service/ReferenceService.h"
#include "service/StopSignal.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <charconv>
#include <exception>
#include <iostream>
#include <sstream>

namespace {

using namespace brevint::service;

std::string DescribeContent(const ServiceOptions& options) {
    std::ostringstream text;
    text << "Users (name / password):\n";
    for (const User& user : options.users)
        text << "  " << user.name << " / " << user.password
             << (user.role == Role::Administrator ? "  (administrator)\n" : "\n");
    text << "Root folders:\n  projects  " << Repository::kProjectRootId << "\n  templates "
         << Repository::kTemplateRootId << "\n";
    return text.str();
}

std::pair<std::string, std::uint64_t> ParsePatternFile(const std::string& text) {
    const auto equals = std::min(text.rfind('='), text.size());
    const std::string digits = text.substr(std::min(equals + 1, text.size()));
    const char* const end = digits.data() + digits.size();
    std::uint64_t size = 0;
    const auto [stop, error] = std::from_chars(digits.data(), end, size);
    if (equals == 0 || stop != end || error != std::errc())
        throw CLI::ValidationError("--add-file", "expects NAME=BYTES, not " + text);
    return {text.substr(0, equals), size};
}

int Run(int argc, char** argv) {
    ServiceOptions options;
    CLI::App app("Repository service and identity portal on the loopback interface, in memory.",
                 "brevint-service");
    app.footer(DescribeContent(options));
    app.set_version_flag("--version", "brevint-service " BREVINT_VERSION);
    app.add_option("--port", options.http.port, "Port to listen on; 0 lets the system choose")
        ->capture_default_str();
    app.add_option("--base", options.basePath, "Path below which the service lies, like /dashboard")
        ->check([](const std::string& base) {
            const bool proper = base.empty() || (base.front() == '/' && base.back() != '/');
            return proper ? "" : "must begin with / and not end with it";
        });
    app.add_flag("--chunked", options.chunkedDownloads,
                 "Send every download in chunks, without its length");
    app.add_option("--job-polls", options.unfinishedPolls,
                   "Polls that find a job unfinished before it ends; 0 does it at once")
        ->capture_default_str();
    app.add_option("--many", options.manyFiles, "Add a folder \"Many\" with so many small files");
    std::vector<std::string> patternFiles;
    app.add_option("--add-file", patternFiles,
                   "Add a file of a fixed pattern to the projects: NAME=BYTES");

    try {
        app.parse(argc, argv);
        for (const std::string& text : patternFiles)
            options.patternFiles.push_back(ParsePatternFile(text));
    } catch (const CLI::ParseError& result) {
        return app.exit(result);
    }

    StopSignal stop;
    ReferenceService service(std::move(options));
    service.Start();
    std::cout << "Listening on " << service.Url() << std::endl;
    stop.Wait();
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    try {
        return Run(argc, argv);
    } catch (const std::exception& failure) {
        std::cerr << "brevint-service: " << failure.what() << '\n';
        return 1;
    }
}
