#pragma once

#include <filesystem>

namespace brevint::cli {

/// The name of a file that is in the making, and the file itself once somebody has made it: gone
/// with this object unless it was moved.
class TemporaryFile {
public:
    /// In a folder that exists; under a name that no other file has.
    explicit TemporaryFile(const std::filesystem::path& folder);
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile();

    const std::filesystem::path& Path() const { return m_path; }

    /// Puts the file in the place of `target` in one step, whether there is one or not. Throws a
    /// Failure.
    void MoveTo(const std::filesystem::path& target);

private:
    std::filesystem::path m_path;
};

} // namespace brevint::cli
