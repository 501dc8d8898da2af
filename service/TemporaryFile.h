#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace brevint::service {

/// A file that goes with its object, and with the process however that ends. Every failure is a
/// std::system_error.
class TemporaryFile {
public:
    TemporaryFile();
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile();

    void Append(std::string_view bytes) const;

    /// Fills `target`; any thread may call it once the file is written.
    void Read(std::uint64_t offset, char* target, std::size_t count) const;

private:
    std::intptr_t m_file; ///< The system's descriptor or handle.
};

} // namespace brevint::service
