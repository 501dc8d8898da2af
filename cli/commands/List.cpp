#include "cli/commands/Command.h"
#include "cli/output/SizeText.h"
#include "cli/output/Table.h"
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

class List : public Command {
public:
    void AddOptions(OptionList& options) override {
        options.Optional("item", m_item, kItemType,
                         "Folder, by identifier or path; the root folder if left out");
        options.Flag("-l", m_long, "Show all that is known about each item");
    }

    ExitCode Run(Context& context) override {
        const std::string& folder = m_item.empty() ? context.Settings().root : m_item;
        const std::wstring folderId = context.Items().Id(folder);
        const std::vector<CFolderItem> items = ListFolder(context.TheService(), folderId, folder);
        if (context.Out().IsJson()) {
            nlohmann::json records = nlohmann::json::array();
            for (const CFolderItem& item : items) {
                records.push_back(ToJson(item));
            }
            context.Out().Document({{"folderId", Text(folderId)}, {"items", std::move(records)}});
        } else if (m_long) {
            context.Out().Lines(LongLines(items));
        } else {
            context.Out().Print(ShortTable(items));
        }
        return ExitCode::Success;
    }

private:
    std::string m_item;
    bool m_long = false;
};

} // namespace

std::unique_ptr<Command> MakeList() {
    return std::make_unique<List>();
}

} // namespace brevint::cli
