#pragma once

#include "service/Blob.h"
#include "service/User.h"

#include <chrono>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace brevint::service {

/// One folder or file. Names are UTF-8; times are UTC.
struct Item {
    std::string id;
    std::string parentId;
    std::string ownerId;
    std::string name;
    std::string description;
    std::chrono::sys_seconds created;
    std::string createdBy; ///< User name.
    std::chrono::sys_seconds modified;
    std::string lockedBy; ///< User name; empty when the file is checked in.
    bool isPublic = true;
    std::string version;                 ///< Another one for every content that the file ever has.
    std::shared_ptr<const Blob> content; ///< Null for a folder.

    bool IsFolder() const { return content == nullptr; }
};

/// The tree of folders and files under its two roots: projects and templates. Thread-safe, every
/// operation atomic; a refused operation throws ServiceError and changes nothing. Names are unique
/// within a folder without regard to ASCII case.
class Repository {
public:
    static constexpr std::string_view kProjectRootId = "00000000-0000-0000-0000-000000000001";
    static constexpr std::string_view kTemplateRootId = "00000000-0000-0000-0000-000000000002";

    /// Both roots exist from the start and belong to `owner`.
    explicit Repository(const User& owner);

    Item Find(std::string_view id) const;
    std::vector<Item> Children(std::string_view folderId) const;

    /// "/Projects/Folder/File.txt"
    std::string Path(std::string_view id) const;

    /// Every template file, in whatever folder, with the name of the folder that it lies in.
    std::vector<std::pair<Item, std::string>> Templates() const;

    std::string AddFolder(std::string_view parentId, const std::string& name, const User& user);

    /// Whether a file of that name could be put there now; throws when not.
    void CheckNewFile(std::string_view parentId, const std::string& name, const User& user) const;
    std::string AddFile(std::string_view parentId, const std::string& name,
                        std::shared_ptr<const Blob> content, const User& user);

    void CheckReplacement(std::string_view fileId, const User& user) const;
    std::string ReplaceFile(std::string_view fileId, const std::string& providedName,
                            std::shared_ptr<const Blob> content, const User& user);

    /// Gives the file another version, as if its content had been replaced.
    void Renew(std::string_view fileId);

    void CheckOut(std::string_view id, const User& user);
    void CheckIn(std::string_view id, const User& user);

    /// Removes the items and all that lies below them.
    void Remove(const std::vector<std::string>& ids, const User& user);

    /// Puts an item there as it is, unchecked: for the content that a service starts with.
    std::string Seed(Item item);

private:
    struct Node {
        Item item;
        std::map<std::string, std::string> children; ///< Lower-case name to id; folders only.
    };

    const Node& FindNode(std::string_view id) const;
    const Node& FindFolder(std::string_view id) const;
    const Node& FindFile(std::string_view id) const;
    bool LiesInTemplates(const Node& node) const;
    void RequireWritable(const Node& node, const User& user) const;
    void RequireUnlocked(const Node& node, const User& user) const;
    void CheckName(const std::string& name) const;
    void CheckNewFileLocked(std::string_view parentId, const std::string& name,
                            const User& user) const;
    void CheckReplacementLocked(std::string_view fileId, const User& user) const;
    Node& Lockable(std::string_view id, const User& user);
    std::string Insert(Item item);
    void Erase(const std::string& id);

    mutable std::mutex m_mutex;
    std::unordered_map<std::string, Node> m_nodes;
};

} // namespace brevint::service
