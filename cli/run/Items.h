#pragma once

#include <brevint/client.h>

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace brevint::cli {

/// An item that the command line means.
struct NamedItem {
    std::string text; ///< How it is called in messages: its path, or its identifier.
    Item item;        ///< Its kind is Other where only the identifier is known.
};

/// Finds the items that the command line names: by identifier, or by a path that begins with "/"
/// and the name of a root.
class Items {
public:
    /// `roots` are identifiers by name.
    Items(Client& client, std::map<std::string, std::string> roots, CallOptions limits);

    const std::map<std::string, std::string>& Roots() const { return m_roots; }

    /// The one item meant. Throws a Failure when there is none, or when there are several.
    NamedItem Find(const std::string& text) const;

    /// The same for each of the texts, whose last name may be a pattern: "*" stands for any
    /// characters, "?" for one. An item with exactly that name comes first. A pattern that fits
    /// nothing throws a Failure.
    std::vector<NamedItem> Expand(const std::vector<std::string>& texts) const;

    /// An item of which the identifier alone is known, with the rest of its record where the
    /// service tells its path and that lies below a known root.
    Item Describe(const std::string& id) const;

private:
    struct Place {
        std::string rootId;
        std::string rest; ///< Below the root; empty: the root itself.
    };
    Place Locate(const std::string& path) const;
    Item FindPath(const std::string& path) const;

    Client& m_client;
    const std::map<std::string, std::string> m_roots;
    const CallOptions m_limits;
};

/// Whether a name fits a pattern of "*" and "?".
bool FitsPattern(std::string_view name, std::string_view pattern);

} // namespace brevint::cli
