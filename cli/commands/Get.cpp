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

/// The size in the listing of the file's folder, where that can be had. `path` may be empty.
std::optional<std::uint64_t> ListedSize(Context& context, const std::wstring& id,
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

std::filesystem::path LocalName(const std::string& path) {
    const std::optional<std::string> name = SafeFileName(path);
    if (!name) {
        throw Failure(ExitCode::LocalFile,
                      "\"" + path + "\" does not end in a name that a local file can have.",
                      "Choose a name with -o.");
    }
    return ToPath(*name);
}

/// Downloads one item. `written` holds the files that this command has written already.
Outcome GetOne(Context& context, const std::string& item, bool toOutput,
               std::set<std::filesystem::path>& written) {
    const Options& options = context.Settings();
    RemoteFile file{{}, item, {}};
    std::string path = item;
    if (item.starts_with('/')) {
        const CFolderItem record = context.Items().Find(item);
        file.id = record.GetUniqueId();
        file.size = ParseSize(Utf8::ToNarrow(record.GetSize()));
    } else {
        file.id = CheckIdentifier(item);
        path = options.output.empty() ? AskPath(context.TheService(), file.id, item) : "";
        file.size = ListedSize(context, file.id, path);
    }
    if (toOutput) {
        DownloadToOutput(context, file);
        return {{}, nlohmann::json::object()};
    }
    const std::filesystem::path target =
        options.output.empty() ? (ToPath(options.directory) / LocalName(path)).lexically_normal()
                               : ToPath(options.output);
    // Two files of one name in one run: the second would take the place of the first.
    if (!written.insert(std::filesystem::weakly_canonical(target)).second) {
        throw Failure(ExitCode::LocalFile,
                      "\"" + PathToUtf8(target) + "\" has been written by this very command.",
                      "Download the items one by one, with -o.");
    }
    const std::uintmax_t size = Download(context, file, target);
    return {PathToUtf8(target) + "  " + FormatSize(size),
            {{"id", Utf8::ToNarrow(file.id)}, {"file", PathToUtf8(target)}, {"size", size}}};
}

} // namespace

ExitCode RunGet(Context& context) {
    const Options& options = context.Settings();
    if (!options.output.empty() && options.items.size() > 1) {
        throw Failure(ExitCode::Usage, "-o takes one item only.",
                      "Use -d to name the folder for several.");
    }
    const bool toOutput = options.output == "-" ||
                          (!options.output.empty() && Terminal::IsOutput(ToPath(options.output)));
    if (toOutput && context.Out().IsJson()) {
        throw Failure(ExitCode::Usage,
                      "The file and the document of --json cannot both be standard output.",
                      "Name a file with -o.");
    }
    std::set<std::filesystem::path> written;
    return ForEachItem(context, options.items, [&](const std::string& item) {
        return GetOne(context, item, toOutput, written);
    });
}

} // namespace brevint::cli
