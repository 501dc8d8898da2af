#pragma once

#include <filesystem>

namespace brevint::cli {

/// The name of a file that is in the making, in the folder where it is to stand in the end, and the
/// file itself once somebody has made it: gone with this object unless it was moved.
class TemporaryFile {
public:
    /// Chooses a name that no file has. Does not make the file.
    explicit TemporaryFile(const std::filesystem::path& folder);
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile();

    const std::filesystem::path& Path() const { return m_path; }

    /// Puts the file in the place of `target` in one step, whether there is one or not. Throws a
    /// Failure when that cannot be; an old `target` is then as it was.
    void MoveTo(const std::filesystem::path& target);

private:
    std::filesystem::path m_path;
};

} // namespace brevint::cli
