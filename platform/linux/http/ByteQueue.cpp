#include "platform/linux/http/ByteQueue.h"

#include <algorithm>

namespace platform {

void ByteQueue::Append(const char* data, std::size_t size) {
    m_bytes.insert(m_bytes.end(), data, data + size);
}

std::size_t ByteQueue::Pop(char* target, std::size_t size) noexcept {
    const std::size_t taken = std::min(size, Size());
    std::copy_n(m_bytes.data() + m_first, taken, target);
    m_first += taken;
    if (Empty()) {
        m_bytes.clear();
        m_first = 0;
    }
    return taken;
}

} // namespace platform
