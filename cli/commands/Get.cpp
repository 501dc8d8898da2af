#include "cli/Command.h"
#include "cli/Download.h"
#include "cli/Failure.h"
#include "cli/Outcomes.h"
#include "cli/SafeName.h"
#include "cli/SizeText.h"
#include "cli/Terminal.h"
#include "cli/Utf8.h"

#include <set>

namespace brevint::cli {

namespace {

class Get : public Command {
public:
    void AddOptions(OptionList& options) override {
        options.Required("items", items_, kItemType, "Files, by identifier or path");
        options.Optional("-o,--output", file_, kFileType,
                         "File to write, for one item only; \"-\" is standard output");
        options.Optional("-d,--directory", folder_, kFolderType,
                         "Folder to write to; the files are called as on the service");
        options.Exclude("--output", "--directory");
    }

    ExitCode Run(Context& context) override {
        if (!file_.empty() && items_.size() > 1) {
            throw Failure(ExitCode::Usage, "-o takes one item only.",
                          "Use -d to name the folder for several.");
        }
        toOutput_ = file_ == "-" || (!file_.empty() && Terminal::IsOutput(ToPath(file_)));
        if (toOutput_ && context.Out().IsJson()) {
            throw Failure(ExitCode::Usage,
                          "The file and the document of --json cannot both be standard output.",
                          "Name a file with -o.");
        }
        return ForEachItem(context, items_,
                           [&](const std::string& item) { return GetOne(context, item); });
    }

private:
    Outcome GetOne(Context& context, const std::string& item) {
        RemoteFile file{{}, item, {}};
        std::string path = item;
        if (item.starts_with('/')) {
            const CFolderItem record = context.Items().Find(item);
            file.id = record.GetUniqueId();
            file.size = ParseSize(ToUtf8(record.GetSize()));
        } else {
            file.id = CheckIdentifier(item);
            path = file_.empty() ? AskPath(context.TheService(), file.id, item) : std::string();
            file.size = ListedSize(context, file.id, path);
        }
        if (toOutput_) {
            DownloadToOutput(context, file);
            return {{}, nlohmann::json::object()};
        }
        const std::filesystem::path target =
            file_.empty() ? (ToPath(folder_) / ToPath(LocalName(path))).lexically_normal()
                          : ToPath(file_);
        // Two files of one name in one run: the second would take the place of the first.
        if (!written_.insert(std::filesystem::weakly_canonical(target)).second) {
            throw Failure(ExitCode::LocalFile,
                          "\"" + PathToUtf8(target) + "\" has been written by this very command.",
                          "Download the items one by one, with -o.");
        }
        const std::uintmax_t size = Download(context, file, target);
        return {PathToUtf8(target) + "  " + FormatSize(size),
                {{"id", ToUtf8(file.id)}, {"file", PathToUtf8(target)}, {"size", size}}};
    }

    /// The size in the listing of the file's folder, where that can be had. `path` may be empty.
    static std::optional<std::uint64_t> ListedSize(Context& context, const std::wstring& id,
                                                   std::string path) {
        try {
            if (path.empty()) {
                path = AskPath(context.TheService(), id, ToUtf8(id));
            }
            const CFolderItem record = context.Items().Find(path);
            return record.GetUniqueId() == id ? ParseSize(ToUtf8(record.GetSize())) : std::nullopt;
        } catch (const Failure& failure) {
            if (failure.exitCode == ExitCode::Refused || failure.exitCode == ExitCode::Usage) {
                return std::nullopt; // whether there is such a file, the download itself will tell
            }
            throw;
        }
    }

    static std::string LocalName(const std::string& path) {
        const std::optional<std::string> name = SafeFileName(path);
        if (!name) {
            throw Failure(ExitCode::LocalFile,
                          "\"" + path + "\" does not end in a name that a local file can have.",
                          "Choose a name with -o.");
        }
        return *name;
    }

    std::vector<std::string> items_;
    std::string file_;
    std::string folder_ = ".";
    bool toOutput_ = false;
    std::set<std::filesystem::path> written_;
};

} // namespace

std::unique_ptr<Command> MakeGet() {
    return std::make_unique<Get>();
}

} // namespace brevint::cli
