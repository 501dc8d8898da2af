#pragma once

#include "brevint/client/Call.h"
#include "brevint/client/Item.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace brevint {

/// What a walk has reached.
struct WalkEntry {
    Item item;
    /// Below the folder where the walk began, with "/" between names. The names are the service's:
    /// they need not be fit for local files.
    std::string path;
    std::size_t depth = 0; ///< 0: directly in that folder.
};

/// Goes through all that is below a folder, each folder before what it holds: an input range of
/// WalkEntry. A folder is listed when the walk goes on from it, so an increment is a call, which
/// ends like any other. After a failure that is thrown, SkipContents and another increment pass
/// over the folder that could not be listed; one that is stored ends the walk.
///
///     brevint::FolderWalk walk = client.Walk(folder);
///     for (const brevint::WalkEntry& entry : walk) {
///         std::cout << entry.path << '\n';
///         if (entry.item.name == "Archive") {
///             walk.SkipContents();
///         }
///     }
///
/// One thread at a time.
class FolderWalk {
public:
    /// Lives no longer than its walk, which must not be moved meanwhile.
    class Iterator {
    public:
        ///@{
        /// As every input iterator has it.
        using value_type = WalkEntry;
        using difference_type = std::ptrdiff_t;
        using iterator_concept = std::input_iterator_tag;

        Iterator() = default;
        const WalkEntry& operator*() const noexcept { return m_walk->m_entry; }
        const WalkEntry* operator->() const noexcept { return &m_walk->m_entry; }
        Iterator& operator++() {
            m_walk->Advance();
            return *this;
        }
        void operator++(int) { m_walk->Advance(); }
        friend bool operator==(const Iterator& it, std::default_sentinel_t) noexcept {
            return it.IsAtEnd();
        }
        ///@}

    private:
        friend class FolderWalk;
        explicit Iterator(FolderWalk& walk) noexcept : m_walk(&walk) {}

        bool IsAtEnd() const noexcept { return m_walk->m_levels.empty(); }

        FolderWalk* m_walk = nullptr;
    };

    /// See Client::Walk.
    FolderWalk(std::shared_ptr<brevint_client> client, ItemRef folder, CallOptions options)
        : m_client(std::move(client)), m_folder(std::move(folder)), m_options(std::move(options)) {}

    /// Begins anew.
    [[nodiscard]] Iterator begin() {
        m_levels.clear();
        m_entersItem = false;
        detail::Call call(m_client.get(), m_options);
        if (const std::optional<ItemRef> found = call.Resolve(m_folder)) {
            Enter(call, found->Id(), "");
        }
        Advance();
        return Iterator(*this);
    }
    /// Reached after the last entry.
    [[nodiscard]] static std::default_sentinel_t end() noexcept { return {}; }

    /// What the entry that has been reached holds is passed over.
    void SkipContents() noexcept { m_entersItem = false; }

private:
    struct Level {
        std::string folderId;
        std::string prefix; ///< Of the paths of its items.
        Listing items;
        std::size_t next = 0;
    };

    void Enter(detail::Call& call, const std::string& folderId, std::string prefix) {
        const bool isInside = std::ranges::any_of(
            m_levels, [&](const Level& level) { return level.folderId == folderId; });
        if (isInside) {
            call.Conclude({.failure = Failure::NotTheService,
                           .text = "The folder \"" + prefix + "\" contains itself."});
            m_levels.clear();
            return;
        }
        detail::Owned<brevint_items> items = call.Ask<brevint_items>(brevint_list, folderId);
        if (!items) {
            m_levels.clear();
            return;
        }
        m_levels.push_back({folderId, std::move(prefix), Listing(std::move(items))});
    }

    void Advance() {
        if (m_entersItem) {
            detail::Call call(m_client.get(), m_options);
            Enter(call, m_entry.item.id, m_entry.path + '/');
        }
        while (!m_levels.empty() && m_levels.back().next == m_levels.back().items.size()) {
            m_levels.pop_back();
        }
        if (m_levels.empty()) {
            return;
        }
        Level& level = m_levels.back();
        m_entry.item = level.items[level.next++];
        m_entry.path = level.prefix + m_entry.item.name;
        m_entry.depth = m_levels.size() - 1;
        m_entersItem = m_entry.item.kind == ItemKind::Folder;
    }

    std::shared_ptr<brevint_client> m_client;
    ItemRef m_folder;
    CallOptions m_options;
    std::vector<Level> m_levels; ///< From the folder where it began to the one it is in.
    WalkEntry m_entry;
    bool m_entersItem = false;
};

} // namespace brevint
