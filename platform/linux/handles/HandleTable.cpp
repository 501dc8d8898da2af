#include "platform/linux/handles/HandleTable.h"

#include <algorithm>
#include <utility>

namespace platform {

HandleTable& HandleTable::Instance() {
    static HandleTable& table = *new HandleTable;
    return table;
}

HINTERNET HandleTable::Add(std::shared_ptr<InternetHandle> object, HINTERNET parent) {
    const auto parentNumber = reinterpret_cast<Number>(parent);
    const std::lock_guard lock(m_mutex);
    if (parent != nullptr && Locate(parentNumber) == m_entries.end()) {
        return nullptr;
    }
    const auto id = reinterpret_cast<HINTERNET>(m_last + 1);
    object->SetId(id);
    m_entries.push_back({m_last + 1, parentNumber, std::move(object)});
    ++m_last;
    return id;
}

std::shared_ptr<InternetHandle> HandleTable::FindAny(HINTERNET id) const {
    const std::lock_guard lock(m_mutex);
    const auto found = Locate(reinterpret_cast<Number>(id));
    return found == m_entries.end() ? nullptr : found->object;
}

std::vector<std::shared_ptr<InternetHandle>> HandleTable::Remove(HINTERNET id) {
    std::vector<std::shared_ptr<InternetHandle>> objects;
    const auto number = reinterpret_cast<Number>(id);
    const std::lock_guard lock(m_mutex);
    if (Locate(number) != m_entries.end()) {
        Move(number, objects);
    }
    return objects;
}

std::vector<HandleTable::Entry>::const_iterator HandleTable::Locate(Number number) const noexcept {
    const auto found = std::ranges::lower_bound(m_entries, number, {}, &Entry::number);
    return found != m_entries.end() && found->number == number ? found : m_entries.end();
}

void HandleTable::Move(Number number, std::vector<std::shared_ptr<InternetHandle>>& objects) {
    for (;;) {
        const auto child = std::ranges::find(m_entries, number, &Entry::parent);
        if (child == m_entries.end()) {
            break;
        }
        Move(child->number, objects);
    }
    const auto entry = Locate(number);
    objects.push_back(entry->object);
    m_entries.erase(entry);
}

} // namespace platform
