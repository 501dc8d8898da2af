#include "explorer/model/Location.h"

#include <algorithm>
#include <ranges>

namespace brevint::explorer {

namespace {

std::vector<std::string> Names(std::string_view path) {
    std::vector<std::string> names;
    for (const auto part : std::views::split(path, '/')) {
        if (!part.empty()) {
            names.emplace_back(part.begin(), part.end());
        }
    }
    return names;
}

[[noreturn]] void FailToFind(std::string_view name) {
    throw Exception(
        {.failure = Failure::NotFound, .text = "There is no \"" + std::string(name) + "\"."});
}

} // namespace

std::array<Step, 2> Roots() {
    return {{{kProjects, "Projects"}, {kTemplates, "Templates"}}};
}

std::string PathOf(const Location& location) {
    std::string path;
    for (const Step& step : location) {
        path += '/' + step.name;
    }
    return path;
}

std::string PathOf(const Location& folder, const std::string& name) {
    return PathOf(folder) + '/' + name;
}

Found Follow(const Client& client, std::string_view path, const CallOptions& options) {
    Found found;
    for (const std::string& name : Names(path)) {
        if (!found.fileId.empty()) {
            FailToFind(name);
        }
        if (found.folder.empty()) {
            const auto roots = Roots();
            const auto* const root = std::ranges::find(roots, name, &Step::name);
            if (root == roots.end()) {
                FailToFind(name);
            }
            found.folder.push_back(*root);
            continue;
        }
        const Listing listing = client.List(found.folder.back().id, options);
        const auto item = std::ranges::find(listing, name, &Item::name);
        if (item == listing.end()) {
            FailToFind(name);
        }
        const Item it = *item;
        if (it.kind == ItemKind::Folder) {
            found.folder.push_back({it.id, it.name});
        } else {
            found.fileId = it.id;
        }
    }
    if (found.folder.empty()) {
        FailToFind(path);
    }
    return found;
}

} // namespace brevint::explorer
