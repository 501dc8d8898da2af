#include "platform/linux/handles/HandleTable.h"

#include <utility>

namespace platform {

HandleTable& HandleTable::Instance() {
    static HandleTable& table = *new HandleTable;
    return table;
}

HINTERNET HandleTable::Add(std::shared_ptr<InternetHandle> object, HINTERNET parent) {
    const auto parentNumber = reinterpret_cast<Number>(parent);
    const std::lock_guard lock(m_mutex);
    const auto parentEntry = m_entries.find(parentNumber);
    if (parent != nullptr && parentEntry == m_entries.end()) {
        return nullptr;
    }
    const Number number = m_last + 1;
    const auto id = reinterpret_cast<HINTERNET>(number);
    object->SetId(id);
    const auto entry = m_entries.emplace(number, Entry{std::move(object), parentNumber, {}}).first;
    if (parent != nullptr) {
        try {
            parentEntry->second.children.insert(number);
        } catch (...) {
            m_entries.erase(entry);
            throw;
        }
    }
    m_last = number;
    return id;
}

std::shared_ptr<InternetHandle> HandleTable::FindAny(HINTERNET id) const {
    const std::lock_guard lock(m_mutex);
    const auto found = m_entries.find(reinterpret_cast<Number>(id));
    return found == m_entries.end() ? nullptr : found->second.object;
}

std::vector<std::shared_ptr<InternetHandle>> HandleTable::Remove(HINTERNET id) {
    std::vector<std::shared_ptr<InternetHandle>> objects;
    const auto number = reinterpret_cast<Number>(id);
    const std::lock_guard lock(m_mutex);
    const auto found = m_entries.find(number);
    if (found == m_entries.end()) {
        return objects;
    }
    if (const auto parent = m_entries.find(found->second.parent); parent != m_entries.end()) {
        parent->second.children.erase(number);
    }
    Collect(number, objects);
    return objects;
}

void HandleTable::Collect(Number number, std::vector<std::shared_ptr<InternetHandle>>& objects) {
    auto node = m_entries.extract(number);
    for (const Number child : node.mapped().children) {
        Collect(child, objects);
    }
    objects.push_back(std::move(node.mapped().object));
}

} // namespace platform
