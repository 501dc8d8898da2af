#pragma once

#include <cstdint>
#include <optional>

struct FolderItemView;

namespace calls {

/// What an item is. The numbers are those of brevint_item_kind.
enum class ItemKind { Other, Folder, File };

ItemKind KindOf(const FolderItemView& item);
/// Its size, if the service tells it.
std::optional<std::uint64_t> BytesOf(const FolderItemView& item);

} // namespace calls
