#include "service/OptionTable.h"
#include "service/ReferenceService.h"
#include "service/StopSignal.h"

#include <CLI/CLI.hpp>

#include <exception>
#include <iostream>
#include <sstream>

namespace {

using namespace brevint::service;

std::string Footer() {
    std::ostringstream text;
    text << "How to misbehave:\n";
    for (const MisbehaviourRow& row : AllMisbehaviours()) {
        text << "  " << row.name << (row.value.empty() ? "" : "=") << row.value << "\n      "
             << row.meaning << "\n";
    }
    text << "\nUsers (name / password):\n";
    for (const User& user : kUsers) {
        text << "  " << user.name << " / " << user.password
             << (user.role == Role::Administrator ? "  (administrator)\n" : "\n");
    }
    text << "Root folders:\n  projects  " << Repository::kProjectRootId << "\n  templates "
         << Repository::kTemplateRootId << "\n";
    return text.str();
}

void AddOption(CLI::App& app, const OptionRow& row, ServiceOptions& options) {
    if (!*row.value) {
        app.add_flag_callback(
            row.name, [&] { row.set(options, {}); }, row.meaning);
        return;
    }
    const auto set = [&](const std::vector<std::string>& values) {
        try {
            for (const std::string& value : values) {
                row.set(options, value);
            }
        } catch (const std::invalid_argument& failure) {
            throw CLI::ValidationError(row.name, failure.what());
        }
    };
    CLI::Option* const option =
        app.add_option_function<std::vector<std::string>>(row.name, set, row.meaning);
    option->type_name(row.value)->allow_extra_args(false);
    if (!row.repeated) {
        option->expected(1);
    }
}

int Run(int argc, char** argv) {
    ServiceOptions options;
    CLI::App app("Repository service and identity portal on the loopback interface.",
                 "brevint-service");
    app.footer(Footer());
    app.set_version_flag("--version", "brevint-service " BREVINT_VERSION);
    for (const OptionRow& row : AllOptions()) {
        AddOption(app, row, options);
    }
    // For those who write the document; not shown.
    std::string table;
    app.add_option("--write-table", table)->group("");

    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& result) {
        return app.exit(result);
    }
    if (!table.empty()) {
        std::cout << DocumentedTable(table);
        return 0;
    }

    StopSignal stop;
    ReferenceService service(std::move(options));
    service.Start();
    std::cout << "Listening on " << service.Url() << '\n' << std::flush;
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
