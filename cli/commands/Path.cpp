#include "cli/Command.h"
#include "cli/Outcomes.h"
#include "cli/Utf8.h"

#include <CLI/CLI.hpp>

namespace brevint::cli {

namespace {

class Path : public Command {
public:
    void AddOptions(CLI::App& app) override {
        app.add_option("items", items_, "Files and folders, by identifier or path")->required();
    }

    ExitCode Run(Context& context) override {
        return ForEachItem(context, items_, [&context](const std::string& item) {
            const std::wstring id = context.Items().Id(item);
            const std::string path = AskPath(context.TheService(), id, item);
            return Outcome{path, {{"id", ToUtf8(id)}, {"path", path}}};
        });
    }

private:
    std::vector<std::string> items_;
};

} // namespace

std::unique_ptr<Command> MakePath() {
    return std::make_unique<Path>();
}

} // namespace brevint::cli
