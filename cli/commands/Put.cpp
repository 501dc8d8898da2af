#include "cli/CommandLine.h"
#include "cli/Jobs.h"

#include <CLI/CLI.hpp>

namespace brevint::cli {

namespace {

class Put : public Command {
public:
    void AddOptions(CLI::App& app) override {
        app.add_option("files", files_, "Local files")->type_name(kFileType)->required();
        app.add_option("-t,--to", folder_, "Folder to put them in, by identifier or path")
            ->type_name("ITEM")
            ->required();
        app.add_flag("--no-wait", noWait_,
                     "Do not wait until the service has processed them: print the jobs instead");
    }

    ExitCode Run(Context& context) override {
        const std::wstring folderId = context.Items().Id(folder_);
        return ForEachItem(context, files_, [&](const std::string& file) {
            return SendFile(context, JobKind::Upload, folderId, file, !noWait_,
                            file + " cannot be put into " + folder_ + ".");
        });
    }

private:
    std::vector<std::string> files_;
    std::string folder_;
    bool noWait_ = false;
};

} // namespace

std::unique_ptr<Command> MakePut() {
    return std::make_unique<Put>();
}

} // namespace brevint::cli
