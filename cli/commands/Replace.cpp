#include "brevint/IRepositoryProxy.h"
#include "brevint/OverwriteFileResponse.h"
#include "cli/Command.h"
#include "cli/Jobs.h"
#include "cli/LocalFile.h"
#include "cli/Progress.h"
#include "cli/Verdict.h"

#include <CLI/CLI.hpp>

namespace brevint::cli {

namespace {

class Replace : public Command {
public:
    void AddOptions(CLI::App& app) override {
        app.add_option("item", item_, "File to replace, by identifier or path")->required();
        app.add_option("file", file_, "Local file with the new content")->required();
        app.add_flag("--no-wait", noWait_,
                     "Do not wait until the service has processed it: print the job instead");
    }

    ExitCode Run(Context& context) override {
        return ForEachItem(context, {item_}, [&](const std::string& item) {
            const std::wstring path = CheckLocalFile(file_);
            const std::wstring id = context.Items().Id(item);
            const std::string summary = item + " cannot be replaced by " + file_ + ".";
            Service& service = context.TheService();
            std::unique_ptr<COverwriteFileResponse> response;
            {
                Progress progress("Sending " + file_);
                progress.Show();
                response.reset(service.Repository()->OverwriteFile(service.Url(), id, path));
            }
            RequireSuccess(response.get(), summary);
            return FinishSending(context, JobKind::Overwrite, *response, !noWait_, file_, summary);
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
