#include "cli/commands/Command.h"
#include "cli/transfer/Jobs.h"

namespace brevint::cli {

namespace {

class Put : public Command {
public:
    void AddOptions(OptionList& options) override {
        options.Required("files", m_files, kFileType, "Local files");
        options.Required("-t,--to", m_folder, kItemType,
                         "Folder to put them in, by identifier or path");
        options.Flag("--no-wait", m_noWait,
                     "Do not wait until the service has processed them: print the jobs instead");
    }

    ExitCode Run(Context& context) override {
        const std::wstring folderId = context.Items().Id(m_folder);
        return ForEachItem(context, m_files, [&](const std::string& file) {
            return SendFile(context, JobKind::Upload, folderId, file, !m_noWait,
                            file + " cannot be put into " + m_folder + ".");
        });
    }

private:
    std::vector<std::string> m_files;
    std::string m_folder;
    bool m_noWait = false;
};

} // namespace

std::unique_ptr<Command> MakePut() {
    return std::make_unique<Put>();
}

} // namespace brevint::cli
