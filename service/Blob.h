#pragma once

#include "service/TemporaryFile.h"

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

std::shared_ptr<const Blob> MakeBlob(std::string content);

/// The first `size` bytes of the file.
std::shared_ptr<const Blob> MakeBlob(std::shared_ptr<const TemporaryFile> file, std::uint64_t size);

/// `size` bytes that are computed when they are read: byte i is (i * 31 + i / 256) modulo 256.
std::shared_ptr<const Blob> MakePatternBlob(std::uint64_t size);

} // namespace brevint::service
