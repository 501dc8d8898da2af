#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace brevint::explorer {

/// The local name for a file of the service: the same wherever Windows can take it. Its ending is
/// the one by which Windows will choose a program.
std::wstring LocalName(std::string_view name);

/// Whether Windows would run what is in a file of that name.
bool IsProgram(const std::wstring& localName);

/// Marks a file as one from the internet, so that programs are careful with it. Returns whether it
/// is marked.
bool MarkAsDownloaded(const std::filesystem::path& file);

/// Where files lie that were opened: a folder of the program's own in the user's temporary one,
/// which goes with the object. A file that another program still holds is left, and goes with the
/// next object that is made.
class OpenedFiles {
public:
    /// Without a temporary folder no path is given out.
    OpenedFiles();
    explicit OpenedFiles(const std::filesystem::path& parent);
    ~OpenedFiles();
    OpenedFiles(const OpenedFiles&) = delete;
    OpenedFiles& operator=(const OpenedFiles&) = delete;

    /// A path for a file of that name, in a new folder. Empty where no folder can be made.
    std::filesystem::path NewPath(const std::wstring& localName);

    const std::filesystem::path& Folder() const { return m_folder; }

private:
    std::filesystem::path m_folder;
    unsigned m_count = 0;
};

} // namespace brevint::explorer
