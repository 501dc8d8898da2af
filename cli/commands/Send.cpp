// The commands that send files, and the one that asks what became of them.

#include "cli/transfer/Jobs.h"

namespace brevint::cli {

ExitCode RunPut(Context& context) {
    const Options& options = context.Settings();
    const std::wstring folderId = context.Items().Id(options.folder);
    return ForEachItem(context, options.files, [&](const std::string& file) {
        return SendFile(context, JobKind::Upload, folderId, file, !options.noWait,
                        file + " cannot be put into " + options.folder + ".");
    });
}

ExitCode RunReplace(Context& context) {
    const Options& options = context.Settings();
    return ForEachItem(context, {options.item}, [&](const std::string& item) {
        return SendFile(context, JobKind::Overwrite, context.Items().Id(item), options.file,
                        !options.noWait, item + " cannot be replaced by " + options.file + ".");
    });
}

ExitCode RunJob(Context& context) {
    const Options& options = context.Settings();
    const std::wstring jobId = CheckIdentifier(options.job);
    const JobKind kind = options.jobOf == "put" ? JobKind::Upload : JobKind::Overwrite;
    const std::string summary = "The job " + options.job + " has failed, or cannot be asked for.";
    const std::optional<std::string> itemId =
        options.wait ? AwaitJob(context, kind, jobId, "job " + options.job, summary)
                     : PollJob(context, kind, jobId, summary);
    nlohmann::json document = {{"jobId", options.job}, {"finished", itemId.has_value()}};
    if (itemId) {
        document["id"] = *itemId;
    }
    context.Out().Line(itemId ? "finished  " + *itemId : "not finished yet");
    context.Out().Document(document);
    return ExitCode::Success;
}

} // namespace brevint::cli
