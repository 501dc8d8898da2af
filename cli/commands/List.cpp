#include "cli/output/SizeText.h"
#include "cli/output/Table.h"
#include "cli/run/Context.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <iterator>

namespace brevint::cli {

namespace {

/// A folder with what it holds, or items that were named, which stand in no folder.
struct Block {
    std::string heading; ///< Empty: none.
    std::string folderId;
    std::vector<Item> items;
};

std::string SizeCell(const Item& item) {
    return item.size ? FormatSize(*item.size) : std::string();
}

std::string LockCell(const Item& item) {
    if (!item.isLocked) {
        return {};
    }
    return item.lockedBy.empty() ? "yes" : item.lockedBy;
}

Table ShortTable(const std::vector<Item>& items) {
    Table table({{"Type"}, {"Size", Table::Align::Right}, {"Modified"}, {"Locked by"}, {"Name"}});
    for (const Item& item : items) {
        table.AddRow({item.type, SizeCell(item), item.modified, LockCell(item), item.name});
    }
    return table;
}

/// One block per item, with an empty line between two.
std::vector<std::string> LongLines(const std::vector<Item>& items) {
    std::vector<std::string> lines;
    for (const Item& item : items) {
        if (!lines.empty()) {
            lines.emplace_back();
        }
        lines.insert(lines.end(),
                     {item.name, "  Identifier:   " + item.id, "  Parent:       " + item.parentId,
                      "  Owner:        " + item.ownerId, "  Type:         " + item.type,
                      "  Description:  " + item.description, "  Size:         " + SizeCell(item),
                      "  Created:      " + item.created, "  Modified:     " + item.modified,
                      "  Locked by:    " + LockCell(item),
                      std::string("  Public:       ") + (item.isPublic ? "yes" : "no")});
    }
    return lines;
}

const char* KindName(ItemKind kind) {
    switch (kind) {
    case ItemKind::Folder: return "folder";
    case ItemKind::File: return "file";
    case ItemKind::Other: break;
    }
    return "other";
}

nlohmann::json RecordOf(const Item& item) {
    return {{"id", item.id},
            {"parentId", item.parentId},
            {"ownerId", item.ownerId},
            {"name", item.name},
            {"description", item.description},
            {"created", item.created},
            {"modified", item.modified},
            {"size", item.size ? nlohmann::json(*item.size) : nlohmann::json()},
            {"locked", item.isLocked},
            {"lockedBy", item.lockedBy},
            {"public", item.isPublic},
            {"kind", KindName(item.kind)},
            {"type", item.type}};
}

void Sort(std::vector<Item>& items, const Options& options) {
    const auto by = [&](auto key) {
        std::ranges::stable_sort(items, {}, key);
    };
    if (options.sort == "size") {
        by(&Item::size);
    } else if (options.sort == "modified") {
        by(&Item::modifiedTime);
    } else if (options.sort == "name") {
        by(&Item::name);
    }
    if (options.reverse) {
        std::ranges::reverse(items);
    }
}

/// Of a path, with exactly one slash between the two.
std::string Below(const std::string& folder, const std::string& name) {
    return folder.ends_with('/') ? folder + name : folder + '/' + name;
}

/// The folder, and with -R those below it, each before what it holds.
void AddFolder(Context& context, const NamedItem& folder, std::vector<Block>& blocks) {
    const Options& options = context.Settings();
    Block block{folder.text, folder.item.id, {}};
    Attempt("The folder " + folder.text + " cannot be listed.", [&] {
        const Listing listing = context.TheClient().List(folder.item, context.Limits());
        block.items.assign(listing.begin(), listing.end());
    });
    Sort(block.items, options);
    blocks.push_back(std::move(block));
    if (!options.recursive) {
        return;
    }
    const std::size_t index = blocks.size() - 1;
    for (std::size_t i = 0; i < blocks[index].items.size(); ++i) {
        const Item item = blocks[index].items[i];
        if (item.kind == ItemKind::Folder) {
            AddFolder(context, {Below(folder.text, item.name), item}, blocks);
        }
    }
}

/// The roots as if they lay in a folder.
Block RootBlock(Context& context) {
    Block block{"/", "", {}};
    for (const auto& [name, id] : context.TheItems().Roots()) {
        Item root;
        root.id = id;
        root.name = name;
        root.type = "Folder";
        root.kind = ItemKind::Folder;
        block.items.push_back(std::move(root));
    }
    return block;
}

std::vector<Block> Gather(Context& context) {
    const Options& options = context.Settings();
    const std::vector<std::string> texts =
        options.items.empty() ? std::vector<std::string>{"/"} : options.items;
    std::vector<Block> blocks;
    Block named;
    for (const std::string& text : texts) {
        if (text.find_first_not_of('/') == std::string::npos) {
            blocks.push_back(RootBlock(context));
            if (options.recursive) {
                for (const Item& root : Block(blocks.back()).items) {
                    AddFolder(context, {"/" + root.name, root}, blocks);
                }
            }
            continue;
        }
        for (const NamedItem& found : context.TheItems().Expand({text})) {
            // Of an identifier only a listing tells whether it is a folder's.
            if (found.item.kind == ItemKind::File) {
                named.items.push_back(found.item);
            } else {
                AddFolder(context, found, blocks);
            }
        }
    }
    if (!named.items.empty()) {
        Sort(named.items, options);
        blocks.insert(blocks.begin(), std::move(named));
    }
    return blocks;
}

} // namespace

ExitCode RunList(Context& context) {
    const Options& options = context.Settings();
    const std::vector<Block> blocks = Gather(context);
    nlohmann::json folders = nlohmann::json::array();
    for (const Block& block : blocks) {
        if (context.Out().IsJson()) {
            nlohmann::json records = nlohmann::json::array();
            std::ranges::transform(block.items, std::back_inserter(records), RecordOf);
            folders.push_back({{"path", block.heading},
                               {"folderId", block.folderId},
                               {"items", std::move(records)}});
            continue;
        }
        if (blocks.size() > 1) {
            std::vector<std::string> heading(&block == &blocks.front() ? 0 : 1);
            if (!block.heading.empty()) {
                heading.push_back(block.heading + ":");
            }
            context.Out().Lines(heading);
        }
        if (options.allFields) {
            context.Out().Lines(LongLines(block.items));
        } else {
            context.Out().Print(ShortTable(block.items));
        }
    }
    context.Out().Document({{"folders", std::move(folders)}});
    return ExitCode::Success;
}

} // namespace brevint::cli
