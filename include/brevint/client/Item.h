#pragma once

#include "brevint/client/Detail.h"

#include <chrono>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace brevint {

/// Identifiers of the folders that hold all others. A service may have others than these, which are
/// the reference service's.
inline constexpr const char* kProjects = BREVINT_PROJECTS;   ///< "/Projects".
inline constexpr const char* kTemplates = BREVINT_TEMPLATES; ///< "/Templates".

/// What an item is.
enum class ItemKind : std::int32_t {
    Other = BREVINT_ITEM_OTHER,
    Folder = BREVINT_ITEM_FOLDER,
    File = BREVINT_ITEM_FILE
};

/// One item of the repository. Texts are UTF-8, and empty where the service tells nothing.
struct Item {
    std::string id;
    std::string parentId;
    std::string ownerId;
    std::string name;
    std::string description;
    std::string type; ///< As the service calls it, for people.
    ItemKind kind = ItemKind::Other;
    std::optional<std::uint64_t> size;
    std::string created;  ///< As the service wrote it.
    std::string modified; ///< As the service wrote it.
    std::optional<std::chrono::sys_seconds> createdTime;
    std::optional<std::chrono::sys_seconds> modifiedTime;
    bool isLocked = false; ///< Checked out, or the service does not say.
    std::string lockedBy;
    bool isPublic = false; ///< So it is, or the service does not say.
};

namespace detail {

inline Item GetItem(const brevint_items* items, std::size_t index) {
    brevint_item item = Initial(brevint_item_init);
    brevint_items_get(items, index, &item);
    return {.id = Text(item.id),
            .parentId = Text(item.parent_id),
            .ownerId = Text(item.owner_id),
            .name = Text(item.name),
            .description = Text(item.description),
            .type = Text(item.type),
            .kind = static_cast<ItemKind>(item.kind),
            .size = Size(item.bytes),
            .created = Text(item.created),
            .modified = Text(item.modified),
            .createdTime = Time(item.created_time),
            .modifiedTime = Time(item.modified_time),
            .isLocked = item.is_locked != 0,
            .lockedBy = Text(item.locked_by),
            .isPublic = item.is_public != 0};
}

} // namespace detail

/// What a folder holds, in the service's order: a random access range of items. Each Item is made
/// when it is reached, so a listing is in memory once. Copies share it and are cheap.
///
///     for (const brevint::Item& item : client.List(folder)) {
///         std::cout << item.name << '\n';
///     }
class Listing {
public:
    /// Lives no longer than its listing and the copies of that.
    class Iterator {
    public:
        ///@{
        /// As every random access iterator has it.
        using value_type = Item;
        using difference_type = std::ptrdiff_t;
        using reference = Item;
        using iterator_category = std::input_iterator_tag;
        using iterator_concept = std::random_access_iterator_tag;

        Iterator() = default;
        Item operator*() const { return (*this)[0]; }
        Item operator[](difference_type offset) const {
            return detail::GetItem(m_items, static_cast<std::size_t>(m_index + offset));
        }
        Iterator& operator+=(difference_type offset) noexcept {
            m_index += offset;
            return *this;
        }
        Iterator& operator-=(difference_type offset) noexcept { return *this += -offset; }
        Iterator& operator++() noexcept { return *this += 1; }
        Iterator& operator--() noexcept { return *this -= 1; }
        Iterator operator++(int) noexcept { return {m_items, m_index++}; }
        Iterator operator--(int) noexcept { return {m_items, m_index--}; }
        friend Iterator operator+(Iterator it, difference_type offset) noexcept {
            return it += offset;
        }
        friend Iterator operator+(difference_type offset, Iterator it) noexcept {
            return it += offset;
        }
        friend Iterator operator-(Iterator it, difference_type offset) noexcept {
            return it -= offset;
        }
        friend difference_type operator-(const Iterator& a, const Iterator& b) noexcept {
            return a.m_index - b.m_index;
        }
        friend bool operator==(const Iterator& a, const Iterator& b) noexcept {
            return a.m_index == b.m_index;
        }
        friend auto operator<=>(const Iterator& a, const Iterator& b) noexcept {
            return a.m_index <=> b.m_index;
        }
        ///@}

    private:
        friend class Listing;
        Iterator(const brevint_items* items, difference_type index) noexcept
            : m_items(items), m_index(index) {}

        const brevint_items* m_items = nullptr;
        difference_type m_index = 0;
    };

    /// Without items.
    Listing() = default;
    /// Of what the library has listed; null: without items.
    explicit Listing(detail::Owned<brevint_items> items)
        : m_size(items ? brevint_items_count(items.get()) : 0), m_items(std::move(items)) {}

    ///@{
    /// As every random access range has it.
    [[nodiscard]] std::size_t size() const noexcept { return m_size; }
    [[nodiscard]] bool empty() const noexcept { return m_size == 0; }
    [[nodiscard]] Item operator[](std::size_t index) const {
        return detail::GetItem(m_items.get(), index);
    }
    [[nodiscard]] Iterator begin() const noexcept { return {m_items.get(), 0}; }
    [[nodiscard]] Iterator end() const noexcept {
        return {m_items.get(), static_cast<std::ptrdiff_t>(m_size)};
    }
    ///@}

private:
    std::size_t m_size = 0;
    std::shared_ptr<const brevint_items> m_items;
};

/// Says which item is meant: by its identifier, as an Item, or by its path below a folder.
///
///     client.List("00000000-0000-0000-0000-000000000001");
///     client.List(item);
///     client.List({brevint::kProjects, "2026/Plans"});
///
/// A path is looked up by each call anew.
class ItemRef {
public:
    ///@{
    /// The item with that identifier.
    ItemRef(std::string id) : m_id(std::move(id)) {}
    ItemRef(const char* id) : m_id(id) {}
    ///@}
    /// A download of it must have the size that the item says.
    ItemRef(const Item& item) : m_id(item.id), m_size(item.size) {}
    /// Names are separated by "/". A path without a name means nothing, and not the folder.
    ItemRef(std::string folderId, std::string path)
        : m_id(std::move(folderId)), m_path(std::move(path)) {}

    /// Of the item, or of the folder that the path begins at.
    [[nodiscard]] const std::string& Id() const noexcept { return m_id; }
    /// None if the item is known by its identifier.
    [[nodiscard]] const std::optional<std::string>& Path() const noexcept { return m_path; }
    /// As a listing has told.
    [[nodiscard]] std::optional<std::uint64_t> Size() const noexcept { return m_size; }

private:
    std::string m_id;
    std::optional<std::string> m_path;
    std::optional<std::uint64_t> m_size;
};

} // namespace brevint
