#include "cli/transfer/Reports.h"

#include "cli/output/SizeText.h"

#include <utility>

namespace brevint::cli {

namespace {

const char* ActionName(EntryAction action) {
    switch (action) {
    case EntryAction::Transfer: return "move";
    case EntryAction::MakeFolder: return "make-folder";
    case EntryAction::Skip: return "skip";
    case EntryAction::Refuse: break;
    }
    return "refuse";
}

std::string Count(std::size_t count, const std::string& what) {
    return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

void AddSize(nlohmann::json& document, std::optional<std::uint64_t> size) {
    if (size) {
        document["size"] = *size;
    }
}

std::string WriteLine(const std::string& place, std::optional<std::uint64_t> size) {
    return place + "  would be written" + (size ? ", " + FormatSize(*size) : "");
}

std::string MakeLine(const std::string& place) {
    return place + "  would be made";
}

Failure EntryFailure(const std::string& place, const GroupEntry& entry, const Error& error) {
    return FailureOf(place + "/" + entry.path + " cannot be moved.", error);
}

} // namespace

ItemOutcome UpToDate(const std::string& place, std::optional<std::uint64_t> size,
                     nlohmann::json known) {
    known["action"] = "skip";
    AddSize(known, size);
    return {.line = place + "  up to date", .document = std::move(known)};
}

ItemOutcome WouldWrite(const std::string& place, std::optional<std::uint64_t> size,
                       nlohmann::json known) {
    known["action"] = "move";
    AddSize(known, size);
    return {.line = WriteLine(place, size), .document = std::move(known)};
}

void TellRefused(const Context& context, const std::string& place, const TransferGroup& group) {
    const std::size_t count = group.GetProgress().entryCount;
    for (std::size_t i = 0; i < count; ++i) {
        const GroupEntry entry = group.GetEntry(i);
        if (entry.action == EntryAction::Refuse) {
            context.Out().Report(EntryFailure(place, entry, group.GetEntryOutcome(i).error));
        }
    }
}

void TellFolder(const Context& context, const std::string& place, bool isThere,
                const TransferGroup& group, ItemOutcome& outcome) {
    const bool isPlan = context.Settings().planOnly;
    if (isPlan && !isThere) {
        context.Out().Line(MakeLine(place));
    }
    const GroupProgress progress = group.GetProgress();
    nlohmann::json entries = nlohmann::json::array();
    std::size_t skipped = 0;
    for (std::size_t i = 0; i < progress.entryCount; ++i) {
        const GroupEntry entry = group.GetEntry(i);
        const Error error = group.GetEntryOutcome(i).error;
        nlohmann::json record = {
            {"path", entry.path}, {"action", ActionName(entry.action)}, {"ok", !error}};
        AddSize(record, entry.bytesTotal);
        if (error) {
            const Failure failure = EntryFailure(place, entry, error);
            record["error"] = ToJson(failure);
            if (entry.action != EntryAction::Refuse &&
                error.failure != brevint::Failure::Cancelled) {
                context.Out().Report(failure);
            }
            if (isPlan && !outcome.failure) {
                outcome.failure =
                    Failure(failure.exitCode, Count(progress.filesFailed, "file") + " for " +
                                                  place + " would not be moved.");
            }
        } else if (isPlan && entry.action == EntryAction::Transfer) {
            context.Out().Line(WriteLine(place + "/" + entry.path, entry.bytesTotal));
        } else if (isPlan && entry.action == EntryAction::MakeFolder) {
            context.Out().Line(MakeLine(place + "/" + entry.path));
        }
        skipped += entry.action == EntryAction::Skip && entry.bytesTotal ? 1 : 0;
        entries.push_back(std::move(record));
    }
    outcome.document["action"] = "move";
    outcome.document["entries"] = std::move(entries);
    // Of a folder that is not told of, what was to be moved was not known yet.
    if (outcome.failure && outcome.isToldOfFailure && !isPlan &&
        progress.state == TransferState::Cancelled) {
        outcome.failure->summary += " Until then " + Count(progress.filesDone, "file") + " of " +
                                    std::to_string(progress.filesTotal) + " had been moved.";
    }
    const std::size_t moved = isPlan ? progress.filesTotal : progress.filesDone;
    outcome.line = place + "  " + Count(moved, "file") + (isPlan ? " would be written" : "") +
                   ", " + FormatSize(isPlan ? progress.bytesTotal : progress.bytesDone) +
                   (skipped == 0 ? "" : "; " + std::to_string(skipped) + " up to date");
}

void TellJob(const Outcome& sent, bool ofReplacement, ItemOutcome& outcome) {
    if (!sent.jobId.empty()) {
        outcome.document["jobId"] = sent.jobId;
        outcome.document["finished"] = static_cast<bool>(sent);
    }
    if (sent) {
        outcome.document["id"] = sent.itemId;
    }
    if (outcome.failure && sent.jobGoesOn) {
        outcome.failure->hint = "The job goes on; see how it stands with brevint job " +
                                sent.jobId + (ofReplacement ? " --of replace." : ".");
    } else if (outcome.failure && sent.state == TransferState::Cancelled) {
        outcome.failure->hint = "See with brevint ls whether it has arrived.";
    }
}

} // namespace brevint::cli
