#pragma once

#include "platform/linux/handles/InternetHandle.h"

#include <cstdint>
#include <memory>
#include <mutex>
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
        Number number;
        Number parent;
        std::shared_ptr<InternetHandle> object;
    };

    std::shared_ptr<InternetHandle> FindAny(HINTERNET id) const;
    /// The end if there is no such handle.
    std::vector<Entry>::const_iterator Locate(Number number) const noexcept;
    void Move(Number number, std::vector<std::shared_ptr<InternetHandle>>& objects);

    mutable std::mutex m_mutex;
    std::vector<Entry> m_entries; ///< in the order of their numbers
    Number m_last = 0;
};

} // namespace platform
