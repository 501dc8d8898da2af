#include "brevint/IRepositoryProxy.h"
#include "brevint/UploadFileResponse.h"
#include "cli/Command.h"
#include "cli/Jobs.h"
#include "cli/LocalFile.h"
#include "cli/Progress.h"
#include "cli/Verdict.h"

#include <CLI/CLI.hpp>

namespace brevint::cli {

namespace {

class Put : public Command {
public:
    void AddOptions(CLI::App& app) override {
        app.add_option("files", files_, "Local files")->required();
        app.add_option("-t,--to", folder_, "Folder to put them in, by identifier or path")
            ->required();
        app.add_flag("--no-wait", noWait_,
                     "Do not wait until the service has processed them: print the jobs instead");
    }

    ExitCode Run(Context& context) override {
        const std::wstring folderId = context.Items().Id(folder_);
        return ForEachItem(context, files_, [&](const std::string& file) {
            const std::wstring path = CheckLocalFile(file);
            const std::string summary = file + " cannot be put into " + folder_ + ".";
            Service& service = context.TheService();
            std::unique_ptr<CUploadFileResponse> response;
            {
                Progress progress("Sending " + file);
                progress.Show();
                response.reset(service.Repository()->UploadFile(service.Url(), folderId, path));
            }
            RequireSuccess(response.get(), summary);
            return FinishSending(context, JobKind::Upload, *response, !noWait_, file, summary);
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
