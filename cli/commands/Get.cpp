#include "cli/Command.h"
#include "cli/Download.h"
#include "cli/Failure.h"
#include "cli/Outcomes.h"
#include "cli/SafeName.h"
#include "cli/SizeText.h"
#include "cli/Utf8.h"

#include <CLI/CLI.hpp>

#include <set>

namespace brevint::cli {

namespace {

class Get : public Command {
public:
    void AddOptions(CLI::App& app) override {
        app.add_option("items", items_, "Files, by identifier or path")->required();
        auto* const file = app.add_option("-o,--output", file_, "File to write, for one item only");
        app.add_option("-d,--directory", folder_,
                       "Folder to write to; the files are called as on the service")
            ->excludes(file)
            ->capture_default_str();
        app.footer("A file that is there already is replaced, but only once the download is "
                   "complete.");
    }

    ExitCode Run(Context& context) override {
        if (!file_.empty() && items_.size() > 1) {
            throw Failure(ExitCode::Usage, "-o takes one item only.",
                          "Use -d to name the folder for several.");
        }
        return ForEachItem(context, items_,
                           [&](const std::string& item) { return GetOne(context, item); });
    }

private:
    Outcome GetOne(Context& context, const std::string& item) {
        const std::wstring id = context.Items().Id(item);
        const std::filesystem::path target =
            file_.empty() ? ToPath(folder_) / ToPath(LocalName(context, item, id)) : ToPath(file_);
        // Two files of one name in one run: the second would take the place of the first.
        if (!written_.insert(std::filesystem::weakly_canonical(target)).second) {
            throw Failure(ExitCode::LocalFile,
                          "\"" + PathToUtf8(target) + "\" has been written by this very command.",
                          "Download the items one by one, with -o.");
        }
        const std::uintmax_t size = Download(context, id, item, target);
        return {PathToUtf8(target) + "  " + FormatSize(size),
                {{"id", ToUtf8(id)}, {"file", PathToUtf8(target)}, {"size", size}}};
    }

    static std::string LocalName(Context& context, const std::string& item,
                                 const std::wstring& id) {
        const std::string path =
            item.starts_with('/') ? item : AskPath(context.TheService(), id, item);
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
    std::set<std::filesystem::path> written_;
};

} // namespace

std::unique_ptr<Command> MakeGet() {
    return std::make_unique<Get>();
}

} // namespace brevint::cli
