#pragma once

#include "platform/linux/handles/InternetHandle.h"

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <vector>

namespace platform {

/// The process's open handles. Numbers are never used twice, so a handle that is closed late or
/// twice cannot hit another one. Any thread.
class HandleTable {
public:
    static HandleTable& Instance(); ///< never destroyed

    /// Returns null if the parent has been closed meanwhile; a session has no parent.
    HINTERNET Add(std::shared_ptr<InternetHandle> object, HINTERNET parent);

    template <class Handle = InternetHandle>
    std::shared_ptr<Handle> Find(HINTERNET id) const {
        return std::dynamic_pointer_cast<Handle>(FindAny(id));
    }

    /// Takes the handle and everything opened on it out of the table, children first. Empty if
    /// there is no such handle.
    std::vector<std::shared_ptr<InternetHandle>> Remove(HINTERNET id);

private:
    using Number = std::uintptr_t;

    struct Entry {
        std::shared_ptr<InternetHandle> object;
        Number parent;
        std::set<Number> children;
    };

    std::shared_ptr<InternetHandle> FindAny(HINTERNET id) const;
    void Collect(Number number, std::vector<std::shared_ptr<InternetHandle>>& objects);

    mutable std::mutex m_mutex;
    std::map<Number, Entry> m_entries;
    Number m_last = 0;
};

} // namespace platform
