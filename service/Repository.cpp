#include "service/Repository.h"

#include "base/Ascii.h"
#include "service/Guid.h"
#include "service/ServiceError.h"

#include <utf8.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <utility>

namespace brevint::service {

namespace {

constexpr std::array<std::string_view, 4> kRefusedTypes = {".bat", ".cmd", ".exe", ".msi"};

std::chrono::sys_seconds Now() {
    return std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
}

// The extension in lower case with its dot, "" when there is none.
std::string FileType(std::string_view name) {
    const auto dot = name.rfind('.');
    return dot == std::string_view::npos ? std::string() : base::ToLower(name.substr(dot));
}

void CheckContent(const std::string& name, const Blob& content) {
    if (content.Size() == 0) {
        throw BadProvidedFile(name, "is empty.");
    }
    if (std::ranges::find(kRefusedTypes, FileType(name)) != kRefusedTypes.end()) {
        throw BadProvidedFile(name, "is of a type that the repository does not accept.");
    }
}

Item NewItem(std::string_view parentId, const std::string& name, const User& user) {
    Item item;
    item.parentId = parentId;
    item.ownerId = user.id;
    item.name = name;
    item.created = Now();
    item.createdBy = user.name;
    item.modified = item.created;
    return item;
}

} // namespace

Repository::Repository(const User& owner) {
    for (const auto& [id, name] :
         {std::pair(kProjectRootId, "Projects"), std::pair(kTemplateRootId, "Templates")}) {
        Item root = NewItem({}, name, owner);
        root.id = id;
        m_nodes[root.id].item = root;
    }
}

Item Repository::Find(std::string_view id) const {
    const std::lock_guard lock(m_mutex);
    return FindNode(id).item;
}

std::vector<Item> Repository::Children(std::string_view folderId) const {
    const std::lock_guard lock(m_mutex);
    const Node& folder = FindFolder(folderId);
    std::vector<Item> items;
    items.reserve(folder.children.size());
    for (const auto& [key, id] : folder.children) {
        items.push_back(m_nodes.at(id).item);
    }
    return items;
}

std::string Repository::Path(std::string_view id) const {
    const std::lock_guard lock(m_mutex);
    std::string path;
    for (const Node* node = &FindNode(id);; node = &m_nodes.at(node->item.parentId)) {
        path.insert(0, "/" + node->item.name);
        if (node->item.parentId.empty()) {
            return path;
        }
    }
}

std::vector<std::pair<Item, std::string>> Repository::Templates() const {
    const std::lock_guard lock(m_mutex);
    std::vector<std::pair<Item, std::string>> templates;
    for (const auto& [id, node] : m_nodes) {
        if (!node.item.IsFolder() && FileType(node.item.name) == ".template") {
            templates.emplace_back(node.item, m_nodes.at(node.item.parentId).item.name);
        }
    }
    std::ranges::sort(templates, [](const auto& left, const auto& right) {
        return std::tie(left.second, left.first.name) < std::tie(right.second, right.first.name);
    });
    return templates;
}

std::string Repository::AddFolder(std::string_view parentId, const std::string& name,
                                  const User& user) {
    const std::lock_guard lock(m_mutex);
    const Node& parent = FindFolder(parentId);
    RequireWritable(parent, user);
    CheckName(name);
    const auto namesake = parent.children.find(base::ToLower(name));
    if (namesake != parent.children.end()) {
        throw m_nodes.at(namesake->second).item.IsFolder() ? FolderExists(name) : ItemExists();
    }
    return Insert(NewItem(parentId, name, user));
}

void Repository::CheckNewFile(std::string_view parentId, const std::string& name,
                              const User& user) const {
    const std::lock_guard lock(m_mutex);
    CheckNewFileLocked(parentId, name, user);
}

std::string Repository::AddFile(std::string_view parentId, const std::string& name,
                                std::shared_ptr<const Blob> content, const User& user) {
    const std::lock_guard lock(m_mutex);
    CheckNewFileLocked(parentId, name, user);
    CheckContent(name, *content);
    Item item = NewItem(parentId, name, user);
    item.content = std::move(content);
    return Insert(std::move(item));
}

void Repository::CheckReplacement(std::string_view fileId, const User& user) const {
    const std::lock_guard lock(m_mutex);
    CheckReplacementLocked(fileId, user);
}

std::string Repository::ReplaceFile(std::string_view fileId, const std::string& providedName,
                                    std::shared_ptr<const Blob> content, const User& user) {
    const std::lock_guard lock(m_mutex);
    CheckReplacementLocked(fileId, user);
    CheckContent(providedName, *content);
    Item& item = m_nodes.at(std::string(fileId)).item;
    if (FileType(providedName) != FileType(item.name)) {
        throw BadProvidedFile(providedName,
                              "is not of the type of the file that it would replace.");
    }
    item.content = std::move(content);
    item.modified = Now();
    item.version = NewGuid();
    return item.id;
}

void Repository::Renew(std::string_view fileId) {
    const std::lock_guard lock(m_mutex);
    Item& item = m_nodes.at(FindFile(fileId).item.id).item;
    item.modified = Now();
    item.version = NewGuid();
}

void Repository::CheckOut(std::string_view id, const User& user) {
    const std::lock_guard lock(m_mutex);
    Node& file = Lockable(id, user);
    if (!file.item.lockedBy.empty()) {
        throw AlreadyCheckedOut();
    }
    file.item.lockedBy = user.name;
}

void Repository::CheckIn(std::string_view id, const User& user) {
    const std::lock_guard lock(m_mutex);
    Node& file = Lockable(id, user);
    if (file.item.lockedBy.empty()) {
        throw AlreadyCheckedIn();
    }
    file.item.lockedBy.clear();
}

void Repository::Remove(const std::vector<std::string>& ids, const User& user) {
    const std::lock_guard lock(m_mutex);
    for (const std::string& id : ids) {
        const Node& node = FindNode(id);
        if (node.item.parentId.empty()) {
            throw ServiceError(403, "The root of a repository cannot be deleted.");
        }
        RequireWritable(node, user);
        RequireUnlocked(node, user);
    }
    for (const std::string& id : ids) {
        const auto entry = m_nodes.find(id);
        if (entry == m_nodes.end()) {
            continue; // went with a folder named before it
        }
        m_nodes.at(entry->second.item.parentId)
            .children.erase(base::ToLower(entry->second.item.name));
        Erase(id);
    }
}

std::string Repository::Seed(Item item) {
    const std::lock_guard lock(m_mutex);
    return Insert(std::move(item));
}

const Repository::Node& Repository::FindNode(std::string_view id) const {
    const auto entry = m_nodes.find(std::string(id));
    if (entry == m_nodes.end()) {
        throw ItemNotFound();
    }
    return entry->second;
}

const Repository::Node& Repository::FindFolder(std::string_view id) const {
    const Node& node = FindNode(id);
    if (!node.item.IsFolder()) {
        throw NotAFolder();
    }
    return node;
}

const Repository::Node& Repository::FindFile(std::string_view id) const {
    const Node& node = FindNode(id);
    if (node.item.IsFolder()) {
        throw NotAFile();
    }
    return node;
}

bool Repository::LiesInTemplates(const Node& node) const {
    const Node* top = &node;
    while (!top->item.parentId.empty()) {
        top = &m_nodes.at(top->item.parentId);
    }
    return top->item.id == kTemplateRootId;
}

void Repository::RequireWritable(const Node& node, const User& user) const {
    if (user.role != Role::Administrator && LiesInTemplates(node)) {
        throw AuthorizationFailed();
    }
}

void Repository::RequireUnlocked(const Node& node, const User& user) const {
    if (!node.item.lockedBy.empty() && node.item.lockedBy != user.name) {
        throw CheckedOutToAnother();
    }
    for (const auto& [key, id] : node.children) {
        RequireUnlocked(m_nodes.at(id), user);
    }
}

void Repository::CheckName(const std::string& name) const {
    if (base::HasControls(name) || name.find_first_of("\\/:*?\"<>|") != std::string::npos) {
        throw InvalidName();
    }
    if (name.find_first_not_of(" .") == std::string::npos) {
        throw BadRequest("Please specify a name.");
    }
    if (!utf8::is_valid(name.begin(), name.end())) {
        throw BadRequest("The name is not valid UTF-8.");
    }
}

void Repository::CheckNewFileLocked(std::string_view parentId, const std::string& name,
                                    const User& user) const {
    const Node& parent = FindFolder(parentId);
    RequireWritable(parent, user);
    CheckName(name);
    const std::string type = FileType(name);
    if (type == ".project" && LiesInTemplates(parent)) {
        throw NoProjectsInTemplates();
    }
    if (type == ".template" && !LiesInTemplates(parent)) {
        throw NoTemplatesInProjects();
    }
    if (parent.children.contains(base::ToLower(name))) {
        throw ItemExists();
    }
}

void Repository::CheckReplacementLocked(std::string_view fileId, const User& user) const {
    const Node& file = FindFile(fileId);
    RequireWritable(file, user);
    RequireUnlocked(file, user);
}

Repository::Node& Repository::Lockable(std::string_view id, const User& user) {
    const Node& node = FindNode(id);
    if (node.item.IsFolder()) {
        throw CannotLockFolders();
    }
    RequireWritable(node, user);
    RequireUnlocked(node, user);
    return m_nodes.at(node.item.id);
}

std::string Repository::Insert(Item item) {
    item.id = NewGuid();
    item.version = NewGuid();
    std::string id = item.id;
    m_nodes.at(item.parentId).children[base::ToLower(item.name)] = id;
    m_nodes[id].item = std::move(item);
    return id;
}

void Repository::Erase(const std::string& id) {
    const auto node = m_nodes.extract(id);
    for (const auto& [key, child] : node.mapped().children) {
        Erase(child);
    }
}

} // namespace brevint::service
