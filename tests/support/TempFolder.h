#pragma once

#include <filesystem>
#include <string>

namespace brevint::test {

/// A new empty folder, which goes with all that is in it when the object does.
class TempFolder {
public:
    TempFolder();
    ~TempFolder();
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    const std::filesystem::path& Folder() const { return m_folder; }
    /// The full path of a file in the folder, as the library takes names.
    std::wstring Path(const std::wstring& name) const;

private:
    std::filesystem::path m_folder;
};

} // namespace brevint::test
