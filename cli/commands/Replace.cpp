#include "cli/commands/Command.h"
#include "cli/transfer/Jobs.h"

namespace brevint::cli {

namespace {

class Replace : public Command {
public:
    void AddOptions(OptionList& options) override {
        options.Required("item", m_item, kItemType, "File to replace, by identifier or path");
        options.Required("file", m_file, kFileType, "Local file with the new content");
        options.Flag("--no-wait", m_noWait,
                     "Do not wait until the service has processed it: print the job instead");
    }

    ExitCode Run(Context& context) override {
        return ForEachItem(context, {m_item}, [&](const std::string& item) {
            return SendFile(context, JobKind::Overwrite, context.Items().Id(item), m_file,
                            !m_noWait, item + " cannot be replaced by " + m_file + ".");
        });
    }

private:
    std::string m_item;
    std::string m_file;
    bool m_noWait = false;
};

} // namespace

std::unique_ptr<Command> MakeReplace() {
    return std::make_unique<Replace>();
}

} // namespace brevint::cli
