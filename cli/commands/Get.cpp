#include "cli/commands/Command.h"
#include "cli/output/Failure.h"
#include "cli/output/Paths.h"
#include "cli/output/SizeText.h"
#include "cli/run/Outcomes.h"
#include "cli/terminal/Terminal.h"
#include "cli/transfer/Download.h"
#include "cli/transfer/SafeName.h"
#include "support/Utf8.h"

#include <set>

namespace brevint::cli {

namespace {

class Get : public Command {
public:
    void AddOptions(OptionList& options) override {
        options.Required("items", m_items, kItemType, "Files, by identifier or path");
        options.Optional("-o,--output", m_file, kFileType,
                         "File to write, for one item only; \"-\" is standard output");
        options.Optional("-d,--directory", m_folder, kFolderType,
                         "Folder to write to; the files are called as on the service");
        options.Exclude("--output", "--directory");
    }

    ExitCode Run(Context& context) override {
        if (!m_file.empty() && m_items.size() > 1) {
            throw Failure(ExitCode::Usage, "-o takes one item only.",
                          "Use -d to name the folder for several.");
        }
        m_toOutput = m_file == "-" || (!m_file.empty() && Terminal::IsOutput(ToPath(m_file)));
        if (m_toOutput && context.Out().IsJson()) {
            throw Failure(ExitCode::Usage,
                          "The file and the document of --json cannot both be standard output.",
                          "Name a file with -o.");
        }
        return ForEachItem(context, m_items,
                           [&](const std::string& item) { return GetOne(context, item); });
    }

private:
    Outcome GetOne(Context& context, const std::string& item) {
        RemoteFile file{{}, item, {}};
        std::string path = item;
        if (item.starts_with('/')) {
            const CFolderItem record = context.Items().Find(item);
            file.id = record.GetUniqueId();
            file.size = ParseSize(Utf8::ToNarrow(record.GetSize()));
        } else {
            file.id = CheckIdentifier(item);
            path = m_file.empty() ? AskPath(context.TheService(), file.id, item) : std::string();
            file.size = ListedSize(context, file.id, path);
        }
        if (m_toOutput) {
            DownloadToOutput(context, file);
            return {{}, nlohmann::json::object()};
        }
        const std::filesystem::path target =
            m_file.empty() ? (ToPath(m_folder) / ToPath(LocalName(path))).lexically_normal()
                           : ToPath(m_file);
        // Two files of one name in one run: the second would take the place of the first.
        if (!m_written.insert(std::filesystem::weakly_canonical(target)).second) {
            throw Failure(ExitCode::LocalFile,
                          "\"" + PathToUtf8(target) + "\" has been written by this very command.",
                          "Download the items one by one, with -o.");
        }
        const std::uintmax_t size = Download(context, file, target);
        return {PathToUtf8(target) + "  " + FormatSize(size),
                {{"id", Utf8::ToNarrow(file.id)}, {"file", PathToUtf8(target)}, {"size", size}}};
    }

    /// The size in the listing of the file's folder, where that can be had. `path` may be empty.
    static std::optional<std::uint64_t> ListedSize(Context& context, const std::wstring& id,
                                                   std::string path) {
        try {
            if (path.empty()) {
                path = AskPath(context.TheService(), id, Utf8::ToNarrow(id));
            }
            const CFolderItem record = context.Items().Find(path);
            return record.GetUniqueId() == id ? ParseSize(Utf8::ToNarrow(record.GetSize()))
                                              : std::nullopt;
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

    std::vector<std::string> m_items;
    std::string m_file;
    std::string m_folder = ".";
    bool m_toOutput = false;
    std::set<std::filesystem::path> m_written;
};

} // namespace

std::unique_ptr<Command> MakeGet() {
    return std::make_unique<Get>();
}

} // namespace brevint::cli
