// The commands that do one and the same thing with each of the items named.

#include "cli/output/Failure.h"
#include "cli/run/Outcomes.h"
#include "cli/terminal/SafeText.h"
#include "cli/terminal/Terminal.h"

namespace brevint::cli {

namespace {

/// A call that changes each item, told in the past: "Checked in", "checked in".
ExitCode ChangeItems(Context& context, bool (Client::*change)(const ItemRef&, const CallOptions&),
                     const std::string& done, const std::string& undone) {
    return ForEachItem(context, context.Settings().items, [&](const NamedItem& named) {
        context.Ask(named.text + " cannot be " + undone + ".",
                    [&](Client& client, const CallOptions& limits) {
                        return (client.*change)(named.item, limits);
                    });
        return ItemOutcome{done + " " + named.text, {{"id", named.item.id}}};
    });
}

const char* ContentOf(ItemKind kind) {
    switch (kind) {
    case ItemKind::Folder: return " with all that it holds";
    case ItemKind::File: return "";
    case ItemKind::Other: break;
    }
    return " with all that it may hold";
}

/// Whether that is to be deleted: what may be a folder only with -r, and on a terminal only what is
/// agreed to.
bool MayDelete(Context& context, const NamedItem& named) {
    const Options& options = context.Settings();
    const bool asks = !options.force && Terminal::IsTerminal(Terminal::Stream::Input);
    if (options.recursive && !asks) {
        return true;
    }
    const ItemKind kind = named.item.kind == ItemKind::Other
                              ? context.TheItems().Describe(named.item.id).kind
                              : named.item.kind;
    if (kind == ItemKind::Folder && !options.recursive) {
        throw Failure(ExitCode::Usage, named.text + " is a folder.",
                      "Delete it with all that it holds with rm -r.");
    }
    if (kind == ItemKind::Other && !options.recursive) {
        throw Failure(ExitCode::Usage, named.text + " may be a folder: its kind cannot be told.",
                      "Delete it in any case with rm -r.");
    }
    if (!asks) {
        return true;
    }
    const std::string question = "Delete " + named.text + ContentOf(kind) + "? [y/N] ";
    const std::optional<std::string> answer =
        Terminal::ReadLine(Neutralise(question), Terminal::Echo::Shown, context.Stop());
    if (!answer) {
        throw Failure(ExitCode::Interrupted, named.text + " is not deleted.");
    }
    return *answer == "y" || *answer == "yes";
}

} // namespace

ExitCode RunCheckIn(Context& context) {
    return ChangeItems(context, &Client::CheckIn, "Checked in", "checked in");
}

ExitCode RunCheckOut(Context& context) {
    return ChangeItems(context, &Client::CheckOut, "Checked out", "checked out");
}

ExitCode RunRemove(Context& context) {
    return ForEachItem(context, context.Settings().items, [&](const NamedItem& named) {
        if (!MayDelete(context, named)) {
            return ItemOutcome{"Kept " + named.text, {{"id", named.item.id}, {"deleted", false}}};
        }
        context.Ask(named.text + " cannot be deleted.",
                    [&](Client& client, const CallOptions& limits) {
                        return client.Delete(named.item, limits);
                    });
        return ItemOutcome{"Deleted " + named.text, {{"id", named.item.id}, {"deleted", true}}};
    });
}

ExitCode RunPath(Context& context) {
    return ForEachItem(context, context.Settings().items, [&](const NamedItem& named) {
        const std::string path = context.Ask("The path of " + named.text + " cannot be told.",
                                             [&](Client& client, const CallOptions& limits) {
                                                 return client.PathOf(named.item, limits);
                                             });
        return ItemOutcome{path, {{"id", named.item.id}, {"path", path}}};
    });
}

} // namespace brevint::cli
