#include "cli/output/Failure.h"
#include "cli/output/SizeText.h"
#include "cli/output/Table.h"
#include "cli/run/Context.h"
#include "support/Limits.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <optional>
#include <utility>

namespace brevint::cli {

namespace {

/// A folder with what it holds, or items that were named, which stand in no folder.
struct Block {
    std::string heading; ///< Empty: none.
    std::string folderId;
    std::vector<Item> items;
    std::optional<Failure> failure; ///< Why it cannot be listed.
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

/// The roots as if they lay in a folder.
Block RootBlock(const Items& known) {
    Block block{"/", "", {}, {}};
    for (const auto& [name, id] : known.Roots()) {
        Item root;
        root.id = id;
        root.name = name;
        root.type = "Folder";
        root.kind = ItemKind::Folder;
        block.items.push_back(std::move(root));
    }
    return block;
}

/// Gathers what one ls shows. What cannot be listed is reported. It keeps nothing else from being
/// listed, unless that would fail likewise.
class Gathering {
public:
    explicit Gathering(Context& context) : m_context(context), m_known(context.TheItems()) {}

    /// What a text of the command line names.
    void Add(const std::string& text) {
        try {
            if (text.find_first_not_of('/') == std::string::npos) {
                AddRoots();
                return;
            }
            for (const NamedItem& found : m_known.Expand({text})) {
                // Of an identifier only a listing tells whether it is a folder's.
                if (found.item.kind == ItemKind::File) {
                    m_named.items.push_back(found.item);
                } else if (!IsOver()) {
                    AddFolder(found);
                }
            }
        } catch (...) {
            m_around.clear();
            AddFailed({text, "", {}, {}});
        }
    }

    std::vector<Block> Take() {
        if (!m_named.items.empty()) {
            Sort(m_named.items, m_context.Settings());
            m_blocks.insert(m_blocks.begin(), std::move(m_named));
        }
        return std::move(m_blocks);
    }

    /// Whether nothing else can be listed.
    bool IsOver() const { return m_failure && m_failure->concernsAll; }

    /// The first one, or the one after which nothing else could be listed.
    const std::optional<Failure>& TheFailure() const { return m_failure; }

private:
    void AddRoots() {
        m_blocks.push_back(RootBlock(m_known));
        if (m_context.Settings().recursive) {
            AddFoldersOf(m_blocks.size() - 1);
        }
    }

    /// The folder, and with -R those below it, each before what it holds.
    void AddFolder(const NamedItem& folder) {
        Block block{folder.text, folder.item.id, {}, {}};
        try {
            ReadFolder(folder, block);
        } catch (...) {
            AddFailed(std::move(block));
            return;
        }
        m_blocks.push_back(std::move(block));
        if (m_context.Settings().recursive) {
            m_around.push_back(folder.item.id);
            AddFoldersOf(m_blocks.size() - 1);
            m_around.pop_back();
        }
    }

    /// By numbers, because each folder that is added may move the blocks elsewhere.
    void AddFoldersOf(std::size_t number) {
        for (std::size_t i = 0; i < m_blocks[number].items.size() && !IsOver(); ++i) {
            if (m_entries > Limits::kMostEntries) {
                throw Failure(ExitCode::Refused, "There are too many folders and files to list.",
                              "List fewer at a time.");
            }
            const Block& block = m_blocks[number];
            const Item& item = block.items[i];
            if (item.kind == ItemKind::Folder) {
                AddFolder({Below(block.heading, item.name), item});
            }
        }
    }

    void ReadFolder(const NamedItem& folder, Block& block) {
        const std::string summary = "The folder " + folder.text + " cannot be listed.";
        if (std::ranges::find(m_around, folder.item.id) != m_around.end()) {
            throw Failure(ExitCode::Refused, summary + " The service says that it lies in itself.");
        }
        if (m_around.size() >= Limits::kDeepestFolder) {
            throw Failure(ExitCode::Refused, summary + " It lies in too many folders.");
        }
        m_context.Ask(summary, [&](Client& client, const CallOptions& limits) {
            const Listing listing = client.List(folder.item, limits);
            block.items.assign(listing.begin(), listing.end());
        });
        m_entries += block.items.size();
        Sort(block.items, m_context.Settings());
    }

    /// Takes the exception that is being handled for what came of the block.
    void AddFailed(Block block) {
        block.failure = CurrentFailure();
        m_context.Out().Report(*block.failure);
        if (!m_failure || block.failure->concernsAll) {
            m_failure = block.failure;
        }
        m_blocks.push_back(std::move(block));
    }

    Context& m_context;
    const Items& m_known;
    std::vector<Block> m_blocks;
    Block m_named;                     ///< Files that were named.
    std::vector<std::string> m_around; ///< The identifiers of the folders around the next one.
    std::size_t m_entries = 0;         ///< Of all folders listed so far.
    std::optional<Failure> m_failure;
};

nlohmann::json RecordOf(const Block& block) {
    nlohmann::json items = nlohmann::json::array();
    for (const Item& item : block.items) {
        items.push_back(RecordOf(item));
    }
    nlohmann::json record = {
        {"path", block.heading}, {"folderId", block.folderId}, {"items", std::move(items)}};
    if (block.failure) {
        record["error"] = ToJson(*block.failure);
    }
    return record;
}

nlohmann::json DocumentOf(const std::vector<Block>& blocks, const std::optional<Failure>& failure) {
    nlohmann::json folders = nlohmann::json::array();
    for (const Block& block : blocks) {
        folders.push_back(RecordOf(block));
    }
    nlohmann::json document = {{"folders", std::move(folders)}};
    if (failure) {
        document["error"] = ToJson(*failure);
    }
    return document;
}

void Show(const Context& context, const std::vector<Block>& blocks) {
    bool isFirst = true;
    for (const Block& block : blocks) {
        if (block.failure) {
            continue;
        }
        if (blocks.size() > 1) {
            std::vector<std::string> heading(isFirst ? 0 : 1);
            if (!block.heading.empty()) {
                heading.push_back(block.heading + ":");
            }
            context.Out().Lines(heading);
        }
        isFirst = false;
        if (context.Settings().allFields) {
            context.Out().Lines(LongLines(block.items));
        } else {
            context.Out().Print(ShortTable(block.items));
        }
    }
}

} // namespace

ExitCode RunList(Context& context) {
    const Options& options = context.Settings();
    Gathering gathering(context);
    for (const std::string& text :
         options.items.empty() ? std::vector<std::string>{"/"} : options.items) {
        if (!gathering.IsOver()) {
            gathering.Add(text);
        }
    }
    const std::vector<Block> blocks = gathering.Take();
    const std::optional<Failure>& failure = gathering.TheFailure();
    if (context.Out().IsJson()) {
        context.Out().Document(DocumentOf(blocks, failure));
    } else {
        Show(context, blocks);
    }
    return failure ? failure->exitCode : ExitCode::Success;
}

} // namespace brevint::cli
