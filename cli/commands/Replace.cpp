#include "cli/CommandLine.h"
#include "cli/Jobs.h"

#include <CLI/CLI.hpp>

namespace brevint::cli {

namespace {

class Replace : public Command {
public:
    void AddOptions(CLI::App& app) override {
        app.add_option("item", item_, "File to replace, by identifier or path")
            ->type_name("ITEM")
            ->required();
        app.add_option("file", file_, "Local file with the new content")
            ->type_name(kFileType)
            ->required();
        app.add_flag("--no-wait", noWait_,
                     "Do not wait until the service has processed it: print the job instead");
    }

    ExitCode Run(Context& context) override {
        return ForEachItem(context, {item_}, [&](const std::string& item) {
            return SendFile(context, JobKind::Overwrite, context.Items().Id(item), file_, !noWait_,
                            item + " cannot be replaced by " + file_ + ".");
        });
    }

private:
    std::string item_;
    std::string file_;
    bool noWait_ = false;
};

} // namespace

std::unique_ptr<Command> MakeReplace() {
    return std::make_unique<Replace>();
}

} // namespace brevint::cli
