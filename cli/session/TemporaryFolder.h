#pragma once

#include <filesystem>

namespace brevint::cli {

/// A new folder of the user's own among the program's state; gone with this object, with all that
/// it holds.
class TemporaryFolder {
public:
    /// Throws a Failure when it cannot be made.
    TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder();

    const std::filesystem::path& Path() const { return m_path; }

private:
    std::filesystem::path m_path;
};

} // namespace brevint::cli
