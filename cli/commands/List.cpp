#include "cli/output/SizeText.h"
#include "cli/output/Table.h"
#include "cli/run/Context.h"
#include "support/Utf8.h"

#include <nlohmann/json.hpp>

namespace brevint::cli {

namespace {

std::string Text(const std::wstring& wide) {
    return Utf8::ToNarrow(wide);
}

std::string SizeCell(const CFolderItem& item) {
    const std::string text = Text(item.GetSize());
    const auto size = ParseSize(text);
    return size ? FormatSize(*size) : text;
}

std::string LockCell(const CFolderItem& item) {
    if (!item.GetIsLocked()) {
        return {};
    }
    return item.GetLockedBy().empty() ? "yes" : Text(item.GetLockedBy());
}

Table ShortTable(const std::vector<CFolderItem>& items) {
    Table table({{"Type"}, {"Size", Table::Align::Right}, {"Modified"}, {"Locked by"}, {"Name"}});
    for (const CFolderItem& item : items) {
        table.AddRow({Text(item.GetItemTypeDescription()), SizeCell(item), Text(item.GetModified()),
                      LockCell(item), Text(item.GetName())});
    }
    return table;
}

/// One block per item, with an empty line between two.
std::vector<std::string> LongLines(const std::vector<CFolderItem>& items) {
    std::vector<std::string> lines;
    for (const CFolderItem& item : items) {
        if (!lines.empty()) {
            lines.emplace_back();
        }
        lines.insert(
            lines.end(),
            {Text(item.GetName()), "  Identifier:   " + Text(item.GetUniqueId()),
             "  Parent:       " + Text(item.GetParentId()),
             "  Owner:        " + Text(item.GetOwnerId()),
             "  Type:         " + Text(item.GetItemTypeDescription()) + " (" +
                 Text(item.GetItemType()) + ")",
             "  Description:  " + Text(item.GetDescription()), "  Size:         " + SizeCell(item),
             "  Created:      " + Text(item.GetCreated()),
             "  Modified:     " + Text(item.GetModified()), "  Locked by:    " + LockCell(item),
             std::string("  Public:       ") + (item.GetIsPublic() ? "yes" : "no")});
    }
    return lines;
}

nlohmann::json ToJson(const CFolderItem& item) {
    const auto size = ParseSize(Text(item.GetSize()));
    return {{"id", Text(item.GetUniqueId())},
            {"parentId", Text(item.GetParentId())},
            {"ownerId", Text(item.GetOwnerId())},
            {"name", Text(item.GetName())},
            {"description", Text(item.GetDescription())},
            {"created", Text(item.GetCreated())},
            {"modified", Text(item.GetModified())},
            {"size", size ? nlohmann::json(*size) : nlohmann::json()},
            {"locked", item.GetIsLocked()},
            {"lockedBy", Text(item.GetLockedBy())},
            {"public", item.GetIsPublic()},
            {"type", Text(item.GetItemType())},
            {"typeDescription", Text(item.GetItemTypeDescription())}};
}

} // namespace

ExitCode RunList(Context& context) {
    const Options& options = context.Settings();
    const std::string& folder = options.item.empty() ? options.root : options.item;
    const std::wstring folderId = context.Items().Id(folder);
    const std::vector<CFolderItem> items = ListFolder(context.TheService(), folderId, folder);
    if (context.Out().IsJson()) {
        nlohmann::json records = nlohmann::json::array();
        for (const CFolderItem& item : items) {
            records.push_back(ToJson(item));
        }
        context.Out().Document({{"folderId", Text(folderId)}, {"items", std::move(records)}});
    } else if (options.allFields) {
        context.Out().Lines(LongLines(items));
    } else {
        context.Out().Print(ShortTable(items));
    }
    return ExitCode::Success;
}

} // namespace brevint::cli
