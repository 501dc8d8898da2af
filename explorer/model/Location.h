#pragma once

#include "brevint/client.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brevint::explorer {

/// One folder on the way from a root to another.
struct Step {
    std::string id;
    std::string name;

    bool operator==(const Step&) const = default;
};

/// A folder of the service, as the way to it: the root comes first, the folder last. Empty: none.
using Location = std::vector<Step>;

/// The folders that hold all others.
std::array<Step, 2> Roots();

/// "/Projects/2026".
std::string PathOf(const Location& location);
/// The path of an item in a folder.
std::string PathOf(const Location& folder, const std::string& name);

/// What a path leads to.
struct Found {
    Location folder;
    std::string fileId; ///< Of the item in the folder, where the path does not end at a folder.
};

/// Follows a path by listing folder after folder. Throws brevint::Exception.
Found Follow(const Client& client, std::string_view path, const CallOptions& options);

} // namespace brevint::explorer
