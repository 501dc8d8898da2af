#pragma once

#include "brevint/client.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brevint::explorer {

/// What a list shows of an item, in the order of its columns.
enum class Column { Name, Size, Type, Modified, LockedBy, Description };
inline constexpr std::size_t kColumnCount = 6;

/// What a folder holds, in the order and with the filter that the user has chosen. Folders come
/// before files in any order. Making one of a long listing takes a while; sorting and filtering it
/// does not.
class FolderModel {
public:
    FolderModel() = default;
    explicit FolderModel(Listing listing);

    /// Of the folder.
    std::size_t ItemCount() const { return m_records.size(); }
    /// Of what is shown.
    std::size_t RowCount() const { return m_rows.size(); }
    std::uint64_t ByteCount() const { return m_byteCount; }

    Item ItemAt(std::size_t row) const { return m_listing[m_rows[row]]; }
    const std::string& IdOf(std::size_t row) const { return m_records[m_rows[row]].id; }
    bool IsFolder(std::size_t row) const { return m_records[m_rows[row]].isFolder; }
    bool IsLocked(std::size_t row) const { return m_records[m_rows[row]].isLocked; }
    std::wstring CellText(std::size_t row, Column column) const;

    /// Shows only items whose names contain the filter, in whatever case. The empty one shows all.
    void Arrange(Column sortColumn, bool isDescending, std::wstring_view filter);
    Column SortColumn() const { return m_sortColumn; }
    bool IsDescending() const { return m_isDescending; }

    std::optional<std::size_t> RowOf(std::string_view id) const;
    /// The first row at or after `start`, or else before it, whose name begins with the text.
    std::optional<std::size_t> RowOfPrefix(std::wstring_view prefix, std::size_t start) const;
    /// Any item of the folder, whether it is shown or not. Names are compared without case.
    std::optional<Item> FindName(std::wstring_view name) const;

private:
    /// The listing's items have one each, in their order.
    struct Record {
        std::string id;
        std::wstring foldedName;
        bool isFolder = false;
        bool isLocked = false;
        std::array<std::uint64_t, kColumnCount> ranks = {}; ///< Where it stands in each order.
    };

    Listing m_listing;
    std::vector<Record> m_records;
    std::vector<std::size_t> m_rows; ///< Indices of the listing.
    std::uint64_t m_byteCount = 0;
    Column m_sortColumn = Column::Name;
    bool m_isDescending = false;
};

} // namespace brevint::explorer
