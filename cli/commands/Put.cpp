#include "cli/Command.h"
#include "cli/Jobs.h"

namespace brevint::cli {

namespace {

class Put : public Command {
public:
    void AddOptions(OptionList& options) override {
        options.Required("files", files_, kFileType, "Local files");
        options.Required("-t,--to", folder_, kItemType,
                         "Folder to put them in, by identifier or path");
        options.Flag("--no-wait", noWait_,
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
