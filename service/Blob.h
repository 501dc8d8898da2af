#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

namespace brevint::service {

/// The unchanging content of one file. Shared between threads.
class Blob {
public:
    virtual ~Blob() = default;
    virtual std::uint64_t Size() const = 0;

    /// Fills `target` with `count` bytes from `offset` on; the range lies within the content.
    virtual void Read(std::uint64_t offset, char* target, std::size_t count) const = 0;
};

/// `count` bytes of `owner` from `offset` on, without copying them.
std::shared_ptr<const Blob> MakeBlob(std::string owner, std::size_t offset, std::size_t count);
std::shared_ptr<const Blob> MakeBlob(std::string content);

/// `size` bytes that are computed when they are read: byte i is (i * 31 + i / 256) modulo 256.
std::shared_ptr<const Blob> MakePatternBlob(std::uint64_t size);

} // namespace brevint::service
