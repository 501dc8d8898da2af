#pragma once

#include "brevint/FolderItem.h"
#include "cli/service/Service.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brevint::cli {

/// What a folder holds, in the service's order. `name` is how the folder is called in failures.
std::vector<CFolderItem> ListFolder(Service& service, const std::wstring& folderId,
                                    std::string_view name);

/// The path of an item as the service tells it, UTF-8: "/Projects/2026/Plan.xlsx".
std::string AskPath(Service& service, const std::wstring& itemId, std::string_view name);

/// Finds the items that the command line names: by identifier, or by path.
class ItemResolver {
public:
    /// Paths are looked up by listing from the folder with the identifier `rootId` on. `service`
    /// must outlive the resolver.
    ItemResolver(Service& service, const std::string& rootId);

    /// The identifier of an item that is named by its identifier, or by its path when `item` begins
    /// with "/". Throws a Failure when the path leads to no item, or to several.
    std::wstring Id(const std::string& item);

    /// The record of the item with that path. The root folder's own record holds its identifier
    /// alone.
    CFolderItem Find(const std::string& path);

private:
    const std::string& RootPath();

    Service& m_service;
    std::wstring m_rootId;
    std::optional<std::string> m_rootPath;
};

/// The identifier in the library's form. Throws a Failure for a text that cannot be one: it would
/// become part of addresses and documents as it is.
std::wstring CheckIdentifier(const std::string& text);

} // namespace brevint::cli
