#include "explorer/model/FolderModel.h"

#include "explorer/system/Formats.h"
#include "explorer/system/Text.h"

#include <algorithm>
#include <numeric>
#include <ranges>
#include <utility>

#include <windows.h>

namespace brevint::explorer {

namespace {

constexpr std::size_t Index(Column column) {
    return static_cast<std::size_t>(column);
}

/// Bytes whose order is that of the texts in the user's language: 2 comes before 10.
std::string SortKey(const std::wstring& text) {
    constexpr DWORD kHow = LCMAP_SORTKEY | NORM_IGNORECASE | SORT_DIGITSASNUMBERS;
    const int length = static_cast<int>(text.size());
    const auto map = [&](wchar_t* key, int size) {
        return LCMapStringEx(LOCALE_NAME_USER_DEFAULT, kHow, text.c_str(), length, key, size,
                             nullptr, nullptr, 0);
    };
    // The size is one of bytes.
    std::string key(static_cast<std::size_t>(std::max(map(nullptr, 0), 0)), '\0');
    map(reinterpret_cast<wchar_t*>(key.data()), static_cast<int>(key.size()));
    return key;
}

/// The rank of each text among all: equal ones have the same.
std::vector<std::uint64_t> Ranks(const std::vector<std::string>& keys) {
    std::vector<std::size_t> order(keys.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::ranges::sort(order, {},
                      [&](std::size_t index) -> const std::string& { return keys[index]; });
    std::vector<std::uint64_t> ranks(keys.size());
    std::uint64_t rank = 0;
    for (std::size_t i = 0; i < order.size(); ++i) {
        rank += i > 0 && keys[order[i]] != keys[order[i - 1]] ? 1U : 0U;
        ranks[order[i]] = rank;
    }
    return ranks;
}

/// What is unknown comes before everything else.
std::uint64_t Rank(std::optional<std::uint64_t> size) {
    return size ? *size + 1 : 0;
}

std::uint64_t Rank(std::optional<std::chrono::sys_seconds> time) {
    constexpr std::uint64_t kMiddle = std::uint64_t{1} << 63U;
    return time ? kMiddle + static_cast<std::uint64_t>(time->time_since_epoch().count()) : 0;
}

std::wstring LockText(const Item& item) {
    return DisplayText(Wide(item.isLocked ? item.lockedBy : std::string()));
}

} // namespace

FolderModel::FolderModel(Listing listing)
    : m_listing(std::move(listing)), m_records(m_listing.size()) {
    std::array<std::vector<std::string>, kColumnCount> keys;
    for (const Column column :
         {Column::Name, Column::Type, Column::LockedBy, Column::Description}) {
        keys[Index(column)].resize(m_records.size());
    }
    for (std::size_t i = 0; i < m_records.size(); ++i) {
        const Item item = m_listing[i];
        Record& record = m_records[i];
        const std::wstring name = Wide(item.name);
        record.id = item.id;
        record.foldedName = FoldCase(name);
        record.isFolder = item.kind == ItemKind::Folder;
        record.isLocked = item.isLocked;
        record.ranks[Index(Column::Size)] = Rank(item.size);
        record.ranks[Index(Column::Modified)] = Rank(item.modifiedTime);
        keys[Index(Column::Name)][i] = SortKey(name);
        keys[Index(Column::Type)][i] = SortKey(Wide(item.type));
        keys[Index(Column::LockedBy)][i] = SortKey(LockText(item));
        keys[Index(Column::Description)][i] = SortKey(Wide(item.description));
        m_byteCount += item.size.value_or(0);
    }
    for (std::size_t column = 0; column < kColumnCount; ++column) {
        const std::vector<std::uint64_t> ranks = Ranks(keys[column]);
        for (std::size_t i = 0; i < ranks.size(); ++i) {
            m_records[i].ranks[column] = ranks[i];
        }
    }
    Arrange(m_sortColumn, m_isDescending, {});
}

std::wstring FolderModel::CellText(std::size_t row, Column column) const {
    const Item item = ItemAt(row);
    switch (column) {
    case Column::Name: return DisplayText(Wide(item.name));
    case Column::Size: return item.kind == ItemKind::Folder ? std::wstring() : SizeText(item.size);
    case Column::Type: return DisplayText(Wide(item.type));
    case Column::Modified: return TimeText(item.modifiedTime);
    case Column::LockedBy: return LockText(item);
    case Column::Description: return DisplayText(Wide(item.description));
    }
    return {};
}

void FolderModel::Arrange(Column sortColumn, bool isDescending, std::wstring_view filter) {
    m_sortColumn = sortColumn;
    m_isDescending = isDescending;
    const std::wstring folded = FoldCase(filter);
    m_rows.clear();
    for (std::size_t i = 0; i < m_records.size(); ++i) {
        if (m_records[i].foldedName.find(folded) != std::wstring::npos) {
            m_rows.push_back(i);
        }
    }
    const std::size_t column = Index(m_sortColumn);
    std::ranges::sort(m_rows, [&](std::size_t left, std::size_t right) {
        const Record& a = m_records[left];
        const Record& b = m_records[right];
        if (a.isFolder != b.isFolder) {
            return a.isFolder;
        }
        if (a.ranks[column] != b.ranks[column]) {
            return (a.ranks[column] < b.ranks[column]) != m_isDescending;
        }
        const std::size_t name = Index(Column::Name);
        return std::pair(a.ranks[name], left) < std::pair(b.ranks[name], right);
    });
}

std::optional<std::size_t> FolderModel::RowOf(std::string_view id) const {
    const auto row = std::ranges::find(
        m_rows, id, [&](std::size_t index) -> std::string_view { return m_records[index].id; });
    return row == m_rows.end() ? std::nullopt : std::optional<std::size_t>(row - m_rows.begin());
}

std::optional<std::size_t> FolderModel::RowOfPrefix(std::wstring_view prefix,
                                                    std::size_t start) const {
    const std::wstring folded = FoldCase(prefix);
    for (std::size_t i = 0; i < m_rows.size(); ++i) {
        const std::size_t row = (start + i) % m_rows.size();
        if (m_records[m_rows[row]].foldedName.starts_with(folded)) {
            return row;
        }
    }
    return std::nullopt;
}

std::optional<Item> FolderModel::FindName(std::wstring_view name) const {
    const auto record = std::ranges::find(m_records, FoldCase(name), &Record::foldedName);
    if (record == m_records.end()) {
        return std::nullopt;
    }
    return m_listing[static_cast<std::size_t>(record - m_records.begin())];
}

} // namespace brevint::explorer
