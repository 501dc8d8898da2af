#include "transport/ReadBuffer.h"

#include <new>
#include <utility>

namespace {

/// Above this announced length memory is committed only as data arrives: the length may be bogus.
constexpr std::size_t kCommitted = std::size_t{1} << 30;

/// Of a reply with more bytes the room is doubled only: on Windows it counts as used.
constexpr std::size_t kLarge = std::size_t{256} << 20;

/// Makes room for `count` more bytes of a reply that comes in parts, and for as many again or more:
/// to move what has come often costs more than memory that is not written to. Throws
/// std::bad_alloc.
void MakeRoom(std::size_t count, std::vector<char>& out) {
    if (out.empty() || out.capacity() - out.size() >= count) {
        return;
    }
    const std::size_t needed = out.size() + count;
    try {
        out.reserve((needed > kLarge ? 2 : 4) * needed);
    } catch (const std::bad_alloc&) {
        out.reserve(needed); // what there is may do for these
    }
}

} // namespace

bool ReadBuffer::Allocate(std::size_t size) noexcept {
    *this = {};
    try {
        if (size <= kCommitted) {
            m_bytes.resize(size);
        } else {
            m_lazy = std::make_unique_for_overwrite<char[]>(size);
        }
    } catch (const std::bad_alloc&) {
        return false;
    }
    m_size = size;
    return true;
}

void ReadBuffer::MoveTo(std::size_t count, std::vector<char>& out) {
    if (count == m_bytes.size() && out.empty()) {
        out = std::move(m_bytes);
        *this = {};
        return;
    }
    MakeRoom(count, out);
    out.insert(out.end(), Data(), Data() + count);
    if (m_lazy) {
        *this = {};
    }
}
