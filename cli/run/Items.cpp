#include "cli/run/Items.h"

#include "cli/output/Failure.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace brevint::cli {

namespace {

bool IsPath(const std::string& text) {
    return text.starts_with('/');
}

/// Without the slashes at its end.
std::string Trimmed(std::string path) {
    path.erase(path.find_last_not_of('/') + 1);
    return path;
}

/// The characters of one code point at the front of UTF-8 text.
std::size_t FirstCharacter(std::string_view text) {
    std::size_t size = 1;
    while (size < text.size() && (static_cast<unsigned char>(text[size]) & 0xC0U) == 0x80U) {
        ++size;
    }
    return size;
}

std::string Quoted(const std::string& text) {
    return "\"" + text + "\"";
}

} // namespace

Items::Items(Client& client, std::map<std::string, std::string> roots, CallOptions limits)
    : m_client(client), m_roots(std::move(roots)), m_limits(std::move(limits)) {}

NamedItem Items::Find(const std::string& text) const {
    if (IsPath(text)) {
        return {text, FindPath(text)};
    }
    NamedItem found{text, {}};
    found.item.id = text;
    return found;
}

std::vector<NamedItem> Items::Expand(const std::vector<std::string>& texts) const {
    std::vector<NamedItem> found;
    for (const std::string& text : texts) {
        const std::string path = Trimmed(text);
        const std::string pattern = path.substr(path.rfind('/') + 1);
        const bool isPattern = IsPath(text) && pattern.find_first_of("*?") != std::string::npos;
        if (!isPattern) {
            found.push_back(Find(text));
            continue;
        }
        const std::string folder = path.substr(0, path.size() - pattern.size());
        const std::size_t before = found.size();
        const Item parent = FindPath(folder);
        const Listing listing = Attempt("The folder " + folder + " cannot be listed.",
                                        [&] { return m_client.List(parent, m_limits); });
        for (const Item& item : listing) {
            if (item.name == pattern) { // it is no pattern after all
                found.resize(before);
                found.push_back({folder + item.name, item});
                break;
            }
            if (FitsPattern(item.name, pattern)) {
                found.push_back({folder + item.name, item});
            }
        }
        if (found.size() == before) {
            throw Failure(ExitCode::Refused, "Nothing fits " + Quoted(text) + ".",
                          "See what is there with brevint ls.");
        }
    }
    return found;
}

Item Items::Describe(const std::string& id) const {
    const std::string path = Attempt("The path of " + id + " cannot be told.",
                                     [&] { return m_client.PathOf(id, m_limits); });
    Item known;
    known.id = id;
    known.name = path.substr(path.rfind('/') + 1);
    if (!IsPath(path) || !m_roots.contains(path.substr(1, path.find('/', 1) - 1))) {
        return known;
    }
    Item found = FindPath(path);
    return found.id == id ? found : known;
}

Items::Place Items::Locate(const std::string& path) const {
    const std::string trimmed = Trimmed(path);
    const std::size_t start = std::min(trimmed.find_first_not_of('/'), trimmed.size());
    const std::size_t end = std::min(trimmed.find('/', start), trimmed.size());
    const auto root = m_roots.find(trimmed.substr(start, end - start));
    if (root == m_roots.end()) {
        throw Failure(ExitCode::Usage, Quoted(path) + " begins with no root that is known.",
                      "See the roots with brevint ls /; --root NAME=ID adds one.");
    }
    return {root->second, trimmed.substr(end)};
}

Item Items::FindPath(const std::string& path) const {
    const Place place = Locate(path);
    if (place.rest.find_first_not_of('/') == std::string::npos) {
        Item root;
        root.id = place.rootId;
        root.name = Trimmed(path).substr(Trimmed(path).rfind('/') + 1);
        root.kind = ItemKind::Folder;
        return root;
    }
    return Attempt(path + " cannot be found.",
                   [&] { return m_client.Find(place.rootId, place.rest, m_limits); });
}

bool FitsPattern(std::string_view name, std::string_view pattern) {
    // Where the last "*" stands, and from where on it may stand for more.
    std::optional<std::pair<std::string_view, std::string_view>> retry;
    while (!name.empty() || !pattern.empty()) {
        if (!pattern.empty() && pattern.front() == '*') {
            pattern.remove_prefix(1);
            retry = {name, pattern};
            continue;
        }
        const std::size_t size = name.empty() ? 0 : FirstCharacter(name);
        if (!name.empty() && pattern.starts_with('?')) {
            name.remove_prefix(size);
            pattern.remove_prefix(1);
        } else if (!name.empty() && pattern.starts_with(name.substr(0, size))) {
            name.remove_prefix(size);
            pattern.remove_prefix(size);
        } else if (retry && !retry->first.empty()) {
            retry->first.remove_prefix(FirstCharacter(retry->first));
            name = retry->first;
            pattern = retry->second;
        } else {
            return false;
        }
    }
    return true;
}

} // namespace brevint::cli
