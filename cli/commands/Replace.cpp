#include "cli/Command.h"
#include "cli/Jobs.h"

namespace brevint::cli {

namespace {

class Replace : public Command {
public:
    void AddOptions(OptionList& options) override {
        options.Required("item", item_, kItemType, "File to replace, by identifier or path");
        options.Required("file", file_, kFileType, "Local file with the new content");
        options.Flag("--no-wait", noWait_,
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
