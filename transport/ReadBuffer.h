#pragma once

#include <cstddef>
#include <memory>
#include <vector>

/// What the platform reads a reply into.
class ReadBuffer {
public:
    /// Makes it `size` bytes long; false when there is no room for that. The memory of a very large
    /// one is committed only as it is written to, at the price of a copy in MoveTo.
    bool Allocate(std::size_t size) noexcept;

    char* Data() noexcept { return m_lazy ? m_lazy.get() : m_bytes.data(); }
    std::size_t Size() const noexcept { return m_size; }

    /// Appends the first `count` bytes to `out`. The buffer may be empty after that. Throws
    /// std::bad_alloc.
    void MoveTo(std::size_t count, std::vector<char>& out);

private:
    std::vector<char> m_bytes;
    std::unique_ptr<char[]> m_lazy;
    std::size_t m_size = 0;
};
