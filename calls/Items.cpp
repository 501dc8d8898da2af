#include "calls/Items.h"

#include "responses/FolderListing.h"

#include <charconv>

namespace calls {

ItemKind KindOf(const FolderItemView& item) {
    constexpr std::string_view kFolderType = "0";
    if (item.type == kFolderType) {
        return ItemKind::Folder;
    }
    return item.size.empty() ? ItemKind::Other : ItemKind::File;
}

std::optional<std::uint64_t> BytesOf(const FolderItemView& item) {
    std::uint64_t bytes = 0;
    const char* const end = item.size.data() + item.size.size();
    const auto [stop, error] = std::from_chars(item.size.data(), end, bytes);
    return error == std::errc() && stop == end ? std::optional(bytes) : std::nullopt;
}

} // namespace calls
