// The commands that send files, and the one that asks what became of them.

#include "cli/output/Paths.h"
#include "cli/transfer/Places.h"
#include "cli/transfer/Reports.h"
#include "cli/transfer/Runner.h"
#include "support/ItemName.h"
#include "support/LocalName.h"
#include "support/Utf8.h"

#include <algorithm>
#include <cerrno>
#include <condition_variable>
#include <fstream>
#include <map>
#include <mutex>
#include <vector>

namespace brevint::cli {

namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

/// A file or folder to be sent.
struct Upload {
    std::string text;       ///< As the command line calls it.
    std::string place;      ///< Its path at the service.
    std::size_t number = 0; ///< Of its outcome.
    fs::path path;
    std::string targetId; ///< Of the folder that it goes to, or of the file that it replaces.
    bool isReplacement = false;
};

/// Its name at the service; empty for the root of a disk.
std::string NameOf(const fs::path& path) {
    const fs::path whole = fs::absolute(path).lexically_normal();
    return PathToUtf8(whole.has_filename() ? whole.filename() : whole.parent_path().filename());
}

/// Throws a Failure for a name that a form cannot hold.
void RequireName(const std::string& text, const fs::path& path) {
    const std::string name = NameOf(path);
    if (!Utf8::IsValid(name) || !IsFormName(Utf8::ToWide(name))) {
        throw Failure(ExitCode::LocalFile, "\"" + text + "\" has a name that cannot be sent.");
    }
}

/// Throws a Failure unless that is a file that can be read, and that the service takes as far as
/// can be told before it has it.
void RequireSendable(const std::string& text, const fs::path& path) {
    std::error_code reason;
    const fs::file_status status = fs::status(path, reason);
    if (fs::exists(status) && !fs::is_regular_file(status)) {
        throw Failure(ExitCode::LocalFile,
                      "\"" + text +
                          (fs::is_directory(status) ? "\" is a folder."
                                                    : "\" is neither a file nor a folder."));
    }
    if (!std::ifstream(path, std::ios::binary)) {
        throw LocalFailure("\"" + text + "\" cannot be read",
                           std::error_code(errno, std::generic_category()));
    }
    RequireName(text, path);
    if (fs::file_size(path) == 0) {
        throw Failure(ExitCode::LocalFile,
                      "\"" + text + "\" is empty. The service takes no empty files.");
    }
    if (IsProgramName(Utf8::ToWide(NameOf(path)))) {
        throw Failure(ExitCode::Refused,
                      "\"" + text + "\" would be refused: the service takes no programs.");
    }
}

void BeginFile(Context& context, Runner& runner, const Upload& file) {
    const bool endsWhenSent = context.Settings().noWait;
    runner.Begin(
        {.number = file.number,
         .name = file.text,
         .summary = file.text + " cannot be sent to " + file.place + ".",
         .begin = [file](Client& client, Board::Listener listener) -> Moving {
             return file.isReplacement
                        ? client.Replace(file.targetId, file.path, {.onChange = listener})
                        : client.Upload(file.path, file.targetId, {.onChange = listener});
         },
         .conclude =
             [file, endsWhenSent](const Moving&, const Outcome& sent, ItemOutcome& result) {
                 result.document["action"] = "move";
                 TellJob(sent, file.isReplacement, result);
                 result.line = endsWhenSent ? sent.jobId : sent.itemId + "  " + file.text;
             },
         .endsWhenSent = endsWhenSent});
}

void BeginFolder(Context& context, Runner& runner, const Upload& folder) {
    runner.Begin(
        {.number = folder.number,
         .name = folder.text,
         .summary = folder.text + " cannot be sent to " + folder.place + ".",
         .begin = [&context, folder](Client& client, Board::Listener listener) -> Moving {
             return client.UploadFolder(folder.path, folder.targetId,
                                        {.onChange = listener,
                                         .existing = ExistingOf(context.Settings()),
                                         .planOnly = context.Settings().planOnly},
                                        context.Limits());
         },
         .onPlanned =
             [&context, folder](const TransferGroup& group) {
                 TellRefused(context, folder.place, group);
             },
         .conclude =
             [&context, folder](const Moving& moving, const Outcome&, ItemOutcome& result) {
                 if (!folder.targetId.empty()) {
                     result.document["id"] = folder.targetId;
                 }
                 TellFolder(context, folder.place, !folder.targetId.empty(),
                            std::get<TransferGroup>(moving), result);
             }});
}

/// What one put is about to do, decided before anything moves.
class Plan {
public:
    Plan(Context& context, Outcomes& outcomes, NamedItem folder)
        : m_context(context), m_outcomes(outcomes), m_folder(std::move(folder)) {
        const Listing listing = context.Ask("The folder " + m_folder.text + " cannot be listed.",
                                            [&](Client& client, const CallOptions& limits) {
                                                return client.List(m_folder.item, limits);
                                            });
        for (const Item& item : listing) {
            m_there.emplace(NameKey(item.name), item);
        }
    }

    void Add(const std::string& text) {
        const std::size_t number = m_outcomes.Add(text);
        m_outcomes.Settle(number, [&] { return Judge(text, number); });
    }

    void CarryOut() {
        Runner runner(m_context, m_outcomes);
        for (const Upload& file : m_files) {
            BeginFile(m_context, runner, file);
        }
        for (Upload& folder : m_folders) {
            try {
                MakeFolder(folder);
                BeginFolder(m_context, runner, folder);
            } catch (...) {
                m_outcomes.Settle(folder.number, ItemOutcome{.failure = CurrentFailure()});
            }
        }
        runner.Finish();
    }

private:
    /// What is known of it before it moves, if it does.
    ItemOutcome Judge(const std::string& text, std::size_t number) {
        const Options& options = m_context.Settings();
        const fs::path path = ToPath(text);
        const std::string name = NameOf(path);
        Upload upload{text, m_folder.text + (m_folder.text.ends_with('/') ? "" : "/") + name,
                      number, path, m_folder.item.id};
        const bool isFolder = fs::is_directory(path);
        if (isFolder && !options.recursive) {
            throw Failure(ExitCode::Usage, "\"" + text + "\" is a folder.",
                          "Send it with all that it holds with put -r.");
        }
        if (isFolder) {
            RequireName(text, path);
        } else {
            RequireSendable(text, path);
        }
        m_taken.Take(upload.place);
        const Item* const there = ItemThere(name);
        if (there && (there->kind == ItemKind::Folder) != isFolder) {
            throw Failure(ExitCode::Refused, upload.place + " is there, and is something else.");
        }
        if (isFolder) {
            upload.targetId = there ? there->id : "";
            m_folders.push_back(std::move(upload));
            return {};
        }
        const Version local = LocalVersion(path);
        if (there) {
            if (JudgeExisting(options, upload.place, local, VersionOf(*there)) == Step::Skip) {
                return UpToDate(upload.place, local.size, {{"id", there->id}});
            }
            upload.targetId = there->id;
            upload.isReplacement = true;
        }
        if (options.planOnly) {
            nlohmann::json known = nlohmann::json::object();
            if (there) {
                known["id"] = there->id;
            }
            return WouldWrite(upload.place, local.size, std::move(known));
        }
        m_files.push_back(std::move(upload));
        return {};
    }

    /// The item of that very name; null where there is none. Throws a Failure for one that the
    /// service may take for it.
    const Item* ItemThere(const std::string& name) const {
        const auto [begin, end] = m_there.equal_range(NameKey(name));
        const auto found =
            std::find_if(begin, end, [&](const auto& there) { return there.second.name == name; });
        if (found != end) {
            return &found->second;
        }
        if (begin != end) {
            throw Failure(ExitCode::Refused,
                          "In " + m_folder.text + " there is \"" + begin->second.name +
                              "\", which the service may not tell from \"" + name + "\".",
                          "Give the file the very name of the one that it is to replace.");
        }
        return nullptr;
    }

    void MakeFolder(Upload& folder) {
        if (folder.targetId.empty() && !m_context.Settings().planOnly) {
            folder.targetId = m_context.Ask(
                folder.place + " cannot be made.", [&](Client& client, const CallOptions& limits) {
                    return client.CreateFolder(
                        m_folder.item, folder.place.substr(folder.place.rfind('/') + 1), limits);
                });
        }
    }

    Context& m_context;
    Outcomes& m_outcomes;
    const NamedItem m_folder;
    std::multimap<std::string, Item> m_there; ///< What the folder holds, by the keys of the names.
    TakenNames m_taken;
    std::vector<Upload> m_files;
    std::vector<Upload> m_folders;
};

/// Waits. False when the token was stopped before the time was over.
bool Pause(const StopToken& stop, std::chrono::milliseconds time) {
    std::mutex mutex;
    std::condition_variable changed;
    const auto wake = [&] {
        const std::scoped_lock lock(mutex);
        changed.notify_all();
    };
    const StopCallback<decltype(wake)> onStop(stop, wake);
    std::unique_lock lock(mutex);
    return !changed.wait_for(lock, time, [&] { return stop.stop_requested(); });
}

} // namespace

ExitCode RunPut(Context& context) {
    const Options& options = context.Settings();
    const NamedItem folder = context.TheItems().Find(options.folder);
    if (folder.item.kind == ItemKind::File) {
        throw Failure(ExitCode::Usage, folder.text + " is a file.",
                      "Give it new content with brevint replace.");
    }
    Outcomes outcomes(context);
    Plan plan(context, outcomes, folder);
    for (const std::string& file : options.files) {
        plan.Add(file);
    }
    plan.CarryOut();
    return outcomes.End();
}

ExitCode RunReplace(Context& context) {
    const Options& options = context.Settings();
    Outcomes outcomes(context);
    const std::size_t number = outcomes.Add(options.item);
    outcomes.Settle(number, [&]() -> ItemOutcome {
        const fs::path path = ToPath(options.file);
        RequireSendable(options.file, path);
        const NamedItem named = context.TheItems().Find(options.item);
        Runner runner(context, outcomes);
        BeginFile(context, runner, {options.file, named.text, number, path, named.item.id, true});
        runner.Finish();
        return {};
    });
    return outcomes.End();
}

ExitCode RunJob(Context& context) {
    const Options& options = context.Settings();
    const JobKind kind = options.jobOf == "put" ? JobKind::Upload : JobKind::Replacement;
    const auto end =
        std::chrono::steady_clock::now() + std::chrono::seconds(options.timeoutSeconds);
    const auto ask = [&] {
        return context.Ask("The job " + options.job + " has failed, or cannot be asked for.",
                           [&](Client& client, const CallOptions& limits) {
                               return client.AskJob(options.job, kind, limits);
                           });
    };
    Job job = ask();
    for (auto pause = 100ms; options.wait && !job.isFinished; pause = std::min(2 * pause, 5000ms)) {
        if (std::chrono::steady_clock::now() + pause > end) {
            throw Failure(ExitCode::TimedOut, "The job " + options.job + " goes on.",
                          "Allow more time with --timeout.");
        }
        if (!Pause(context.Stop(), pause)) {
            throw Failure(ExitCode::Interrupted, "The job " + options.job + " goes on.");
        }
        job = ask();
    }
    nlohmann::json document = {{"jobId", options.job}, {"finished", job.isFinished}};
    if (job.isFinished) {
        document["id"] = job.itemId;
    }
    context.Out().Line(job.isFinished ? "finished  " + job.itemId : "not finished yet");
    context.Out().Document(document);
    return ExitCode::Success;
}

} // namespace brevint::cli
