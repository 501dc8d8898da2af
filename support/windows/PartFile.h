#pragma once

#include "support/windows/Handles.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>

/// A file in the making, in the folder where it is to stand in the end. Nobody else can open it
/// meanwhile, and it is moved and removed whatever name it bears by then. Operations that fail say
/// why.
class PartFile {
public:
    /// Makes one under a name that no other file has, with that access; null: as the folder has it.
    std::error_code OpenTemporary(const std::filesystem::path& folder,
                                  PSECURITY_DESCRIPTOR access = nullptr);
    /// Opens the one of that destination, or makes it. device_or_resource_busy when another writer
    /// has it.
    std::error_code OpenResumable(const std::filesystem::path& destination);

    bool IsOpen() const { return static_cast<bool>(m_file); }
    bool IsResumable() const { return !m_record.empty(); }
    HANDLE Get() const { return m_file.get(); }

    /// Bytes that were found and are still there.
    std::uint64_t Size() const { return m_found; }
    std::error_code Truncate(std::uint64_t size);

    std::string ReadRecord() const;
    std::error_code WriteRecord(std::string_view record);

    std::error_code MoveTo(const std::filesystem::path& path);
    void Remove() noexcept;
    /// Takes away what others may do with it.
    void Protect() const noexcept;

private:
    std::error_code TakeOver();
    void RemoveRecord() noexcept;

    HandlePtr m_file;
    std::filesystem::path m_record; ///< Empty for a temporary part.
    LocalPtr m_usersOnly;           ///< The access to a resumable part and its record.
    bool m_mayHaveRecord = false;
    std::uint64_t m_found = 0;
};
