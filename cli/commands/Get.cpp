#include "cli/output/Paths.h"
#include "cli/output/SizeText.h"
#include "cli/session/TemporaryFolder.h"
#include "cli/terminal/Sink.h"
#include "cli/terminal/Terminal.h"
#include "cli/transfer/Places.h"
#include "cli/transfer/Reports.h"
#include "cli/transfer/Runner.h"
#include "support/LocalItem.h"
#include "support/LocalName.h"

#include <algorithm>
#include <fstream>
#include <vector>

namespace brevint::cli {

namespace {

namespace fs = std::filesystem;

/// One item of the command line.
struct Download {
    NamedItem named;
    fs::path target;
    std::size_t number = 0; ///< Of its outcome.
};

bool IsOutputName(const std::string& name) {
    return name == "-" || (!name.empty() && Terminal::IsOutput(ToPath(name)));
}

bool IsFolder(const fs::path& path) {
    std::error_code unknown;
    return fs::is_directory(path, unknown);
}

/// Whether writing there may wait for somebody who reads.
bool IsPipeOrDevice(const fs::path& path) {
    std::error_code unknown;
    return fs::is_other(fs::status(path, unknown));
}

/// The item with all that is known of it, where it was named by its identifier.
Item Describe(Context& context, const NamedItem& named) {
    if (named.item.kind != ItemKind::Other || !named.item.name.empty()) {
        return named.item;
    }
    try {
        return context.TheItems().Describe(named.item.id);
    } catch (const Failure& failure) {
        const Options& options = context.Settings();
        if (failure.exitCode == ExitCode::Refused && !options.output.empty() && !options.planOnly) {
            return named.item; // whether there is such a file the download itself will tell
        }
        throw;
    }
}

/// The name by which an item is called here, unless the command line says another.
fs::path NameOf(const NamedItem& named) {
    const std::string& name = named.item.name;
    // A dot or hyphen in front makes files that programs obey, or that shells take for options.
    if (!IsLocalName(name) || name.starts_with('.') || name.starts_with('-')) {
        throw Failure(ExitCode::LocalFile,
                      named.text + " has a name that no local file should get unasked: \"" + name +
                          "\".",
                      "Choose a name with -o.");
    }
    return ToPath(name);
}

fs::path TargetOf(const Options& options, const NamedItem& named) {
    if (options.output.empty()) {
        return (ToPath(options.directory) / NameOf(named)).lexically_normal();
    }
    const fs::path given = ToPath(options.output);
    const bool isInside = named.item.kind != ItemKind::Folder && IsFolder(given);
    return isInside ? given / NameOf(named) : given;
}

/// Whether -o names the file itself, which may then be replaced, and be a link or a pipe.
bool IsChosen(const Options& options, const fs::path& target) {
    return target == ToPath(options.output);
}

/// Whether the file is to be fetched.
Step StepFor(const Options& options, const Download& file) {
    const LocalItem::Kind there = LookAtLocalItem(file.target).kind;
    if (there == LocalItem::Kind::Missing) {
        return Step::Move;
    }
    if (IsFolder(file.target)) {
        throw Failure(ExitCode::LocalFile, PathToUtf8(file.target) + " is a folder.");
    }
    const bool isChosen = IsChosen(options, file.target);
    if (!isChosen && there == LocalItem::Kind::Other) {
        throw Failure(ExitCode::Refused,
                      PathToUtf8(file.target) + " is there, and is a link or something else.",
                      "Name it with -o to have it written to.");
    }
    if (isChosen && !options.update) {
        return Step::Move;
    }
    return JudgeExisting(options, PathToUtf8(file.target), VersionOf(file.named.item),
                         LocalVersion(file.target));
}

std::string Summary(const std::string& text) {
    return text + " cannot be downloaded.";
}

/// `keepsPart`: what has come until a fault is left for the same command, given once more.
Move FileMove(const Download& file, const fs::path& target, bool keepsPart) {
    return {.number = file.number,
            .name = file.named.text,
            .summary = Summary(file.named.text),
            .begin = [item = file.named.item, target,
                      keepsPart](Client& client, Board::Listener listener) -> Moving {
                return client.Download(item, target,
                                       {.onChange = listener, .keepsPart = keepsPart});
            },
            .conclude = {}};
}

/// Throws a Failure when the content cannot be read, and a std::system_error when it cannot be
/// written.
void Write(const fs::path& content, Sink& sink, const StopToken& stop) {
    std::ifstream file(content, std::ios::binary);
    std::vector<char> block(std::size_t{1} << 20);
    while (file.read(block.data(), static_cast<std::streamsize>(block.size())) ||
           file.gcount() > 0) {
        const auto count = static_cast<std::size_t>(file.gcount());
        if (const std::error_code failed = sink.Write({block.data(), count}, stop)) {
            throw std::system_error(failed);
        }
    }
    if (!file.eof()) {
        throw Failure(ExitCode::LocalFile, "What has come cannot be read from the disk.");
    }
}

/// Hands on what has come, to standard output unless there is another target.
void HandOn(Context& context, const fs::path& content, const fs::path& target) {
    const StopToken stop = context.Stop();
    try {
        if (target.empty()) {
            Sink output;
            Write(content, output, stop);
        } else {
            Sink sink(target, stop);
            Write(content, sink, stop);
        }
    } catch (const std::system_error& error) {
        if (stop.stop_requested()) {
            throw Failure(ExitCode::Interrupted, "Interrupted.");
        }
        throw LocalFailure(target.empty() ? "The output cannot be written"
                                          : "\"" + PathToUtf8(target) + "\" cannot be written",
                           error.code());
    }
}

/// Fetches a file as a whole before the first byte goes to where none can be taken back.
void Pour(Context& context, Outcomes& outcomes, const Download& file, const fs::path& target) {
    const TemporaryFolder folder;
    const fs::path content = folder.Path() / "content";
    Runner runner(context, outcomes);
    Move move = FileMove(file, content, false);
    move.conclude = [&](const Moving&, const Outcome& came, ItemOutcome& result) {
        result.document["id"] = file.named.item.id;
        if (came) {
            HandOn(context, content, target);
        } else if (result.failure->exitCode == ExitCode::Interrupted) {
            result.failure->hint.clear(); // nothing is left to go on with
        }
    };
    runner.Begin(std::move(move));
    runner.Finish();
}

void BeginFile(Context& context, Runner& runner, const Download& file) {
    Move move = FileMove(file, file.target, true);
    move.conclude = [&context, file](const Moving&, const Outcome& came, ItemOutcome& result) {
        result.document.update({{"action", "move"}, {"id", file.named.item.id}});
        if (!came) {
            return;
        }
        std::error_code unknown;
        const std::uintmax_t size = fs::file_size(file.target, unknown);
        result.document["file"] = PathToUtf8(file.target);
        result.document["size"] = size;
        result.line = PathToUtf8(file.target) + "  " + FormatSize(size);
        if (context.Settings().keepTimes && file.named.item.modifiedTime) {
            const auto modified = file.named.item.modifiedTime->time_since_epoch().count();
            if (const std::error_code failed = SetLocalFileTime(file.target, modified)) {
                throw LocalFailure("The time of " + PathToUtf8(file.target) + " cannot be set",
                                   failed);
            }
        }
    };
    runner.Begin(std::move(move));
}

void BeginFolder(Context& context, Runner& runner, const Download& folder) {
    const Options& options = context.Settings();
    runner.Begin(
        {.number = folder.number,
         .name = folder.named.text,
         .summary = Summary(folder.named.text),
         .begin = [&context, &options, folder](Client& client, Board::Listener listener) -> Moving {
             return client.DownloadFolder(folder.named.item, folder.target,
                                          {.onChange = listener,
                                           .existing = ExistingOf(options),
                                           .planOnly = options.planOnly,
                                           .keepTimes = options.keepTimes,
                                           .keepsPart = true},
                                          context.Limits());
         },
         .onPlanned =
             [&context, folder](const TransferGroup& group) {
                 TellRefused(context, PathToUtf8(folder.target), group);
             },
         .conclude =
             [&context, folder](const Moving& moving, const Outcome&, ItemOutcome& result) {
                 result.document.update(
                     {{"id", folder.named.item.id}, {"file", PathToUtf8(folder.target)}});
                 TellFolder(context, PathToUtf8(folder.target), IsFolder(folder.target),
                            std::get<TransferGroup>(moving), result);
             }});
}

/// What one get is about to do, decided before anything moves.
class Plan {
public:
    Plan(Context& context, Outcomes& outcomes) : m_context(context), m_outcomes(outcomes) {}

    void Add(Download download) {
        try {
            Judge(download);
        } catch (...) {
            m_outcomes.Settle(download.number, ItemOutcome{.failure = CurrentFailure()});
        }
    }

    void CarryOut() {
        if (!m_files.empty() && m_context.Settings().output.empty()) {
            fs::create_directories(ToPath(m_context.Settings().directory));
        }
        Runner runner(m_context, m_outcomes);
        for (const Download& file : m_files) {
            BeginFile(m_context, runner, file);
        }
        for (const Download& folder : m_folders) {
            BeginFolder(m_context, runner, folder);
        }
        runner.Finish();
        for (const Download& pour : m_pours) {
            Pour(m_context, m_outcomes, pour, pour.target);
        }
    }

private:
    void Judge(Download& download) {
        const Options& options = m_context.Settings();
        download.named.item = Describe(m_context, download.named);
        const bool isFolder = download.named.item.kind == ItemKind::Folder;
        if (isFolder && (!options.recursive || IsOutputName(options.output))) {
            throw Failure(ExitCode::Usage, download.named.text + " is a folder.",
                          "Download it with all that it holds with get -r.");
        }
        const bool isOutput = IsOutputName(options.output);
        download.target = isOutput ? fs::path() : TargetOf(options, download.named);
        const std::string place = isOutput ? options.output : PathToUtf8(download.target);
        m_taken.Take(isOutput ? place : PathToUtf8(fs::weakly_canonical(download.target)));
        const Item& item = download.named.item;
        const nlohmann::json known = {{"id", item.id}, {"file", place}};
        const bool isPour =
            isOutput || (IsChosen(options, download.target) && IsPipeOrDevice(download.target));
        if (isFolder) {
            m_folders.push_back(std::move(download));
        } else if (!isPour && StepFor(options, download) == Step::Skip) {
            m_outcomes.Settle(download.number, UpToDate(place, item.size, known));
        } else if (options.planOnly) {
            m_outcomes.Settle(download.number, WouldWrite(place, item.size, known));
        } else if (isPour) {
            m_pours.push_back(std::move(download));
        } else {
            m_files.push_back(std::move(download));
        }
    }

    Context& m_context;
    Outcomes& m_outcomes;
    TakenNames m_taken;
    std::vector<Download> m_files;
    std::vector<Download> m_folders;
    std::vector<Download> m_pours;
};

void RequireRoomForOutput(const Context& context) {
    if (context.Out().IsJson()) {
        throw Failure(ExitCode::Usage,
                      "The file and the document of --json cannot both be standard output.",
                      "Name a file with get -o.");
    }
}

/// The items meant. What there is none of is settled.
std::vector<Download> ExpandAll(Context& context, Outcomes& outcomes) {
    std::vector<Download> all;
    for (const std::string& text : context.Settings().items) {
        try {
            for (const NamedItem& named : context.TheItems().Expand({text})) {
                all.push_back({named, {}, outcomes.Add(named.text)});
            }
        } catch (...) {
            outcomes.Settle(outcomes.Add(text), ItemOutcome{.failure = CurrentFailure()});
        }
        if (outcomes.IsInterrupted()) {
            break;
        }
    }
    return all;
}

} // namespace

ExitCode RunGet(Context& context) {
    const Options& options = context.Settings();
    if (IsOutputName(options.output)) {
        RequireRoomForOutput(context);
    }
    Outcomes outcomes(context);
    const std::vector<Download> items = ExpandAll(context, outcomes);
    if (!options.output.empty() && std::max(items.size(), options.items.size()) > 1) {
        throw Failure(ExitCode::Usage, "-o takes one item only.",
                      "Use -d to name the folder for several.");
    }
    Plan plan(context, outcomes);
    for (const Download& item : items) {
        if (!outcomes.IsInterrupted()) {
            plan.Add(item);
        }
    }
    if (!outcomes.IsInterrupted()) {
        plan.CarryOut();
    }
    return outcomes.End();
}

ExitCode RunCat(Context& context) {
    RequireRoomForOutput(context);
    Outcomes outcomes(context);
    for (const Download& file : ExpandAll(context, outcomes)) {
        if (file.named.item.kind == ItemKind::Folder) {
            const Failure failure(ExitCode::Usage, file.named.text + " is a folder.");
            outcomes.Settle(file.number, ItemOutcome{.failure = failure});
        } else if (!outcomes.IsInterrupted()) {
            Pour(context, outcomes, file, {});
        }
    }
    return outcomes.End();
}

} // namespace brevint::cli
