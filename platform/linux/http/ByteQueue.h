#pragma once

#include <cstddef>
#include <vector>

namespace platform {

/// Bytes that have arrived but that nobody has asked for yet.
class ByteQueue {
public:
    void Append(const char* data, std::size_t size); ///< throws std::bad_alloc
    /// Moves up to that many bytes out and returns how many there were.
    std::size_t Pop(char* target, std::size_t size) noexcept;
    std::size_t Size() const noexcept { return m_bytes.size() - m_first; }
    bool Empty() const noexcept { return Size() == 0; }

private:
    std::vector<char> m_bytes;
    std::size_t m_first = 0; ///< the bytes before it have been taken
};

} // namespace platform
