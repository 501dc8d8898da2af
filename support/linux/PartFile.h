#pragma once

#include "support/linux/Descriptor.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

#include <sys/types.h>

/// A file in the making, in the folder where it is to stand in the end. What is written, moved and
/// removed is the file that was opened, whatever others put in its place. The folder stays the
/// caller's, who keeps it open meanwhile. Operations that fail say why.
class PartFile {
public:
    /// Makes one under a name that no other file has.
    std::error_code OpenTemporary(int folder, mode_t mode);
    /// Opens the one of that destination, or makes it, and holds it against other writers. EBUSY
    /// when one of them has it. One that is made has that mode first, then none but the user has
    /// access.
    std::error_code OpenResumable(int folder, std::string_view destination, mode_t mode);

    bool IsOpen() const { return static_cast<bool>(m_file); }
    bool IsResumable() const { return !m_record.empty(); }
    int Get() const { return m_file.Get(); }

    /// Bytes that were found and are still there.
    std::uint64_t Size() const { return m_found; }
    std::error_code Truncate(std::uint64_t size);

    std::string ReadRecord() const;
    std::error_code WriteRecord(std::string_view record);

    /// Gives it the permissions that it had when it was made, or if it was found, those of new
    /// files in this folder.
    std::error_code TakeUsualMode() const;
    std::error_code MoveTo(const std::string& name, bool durable);
    void Remove() noexcept;
    /// Takes away what others may do with it.
    void Protect() const noexcept;

private:
    std::error_code Make(mode_t mode);
    std::error_code FindOrMake(mode_t mode);
    std::error_code TakeOver();
    bool IsInPlace() const;
    void RemoveRecord() noexcept;

    int m_folder = -1;
    Descriptor m_file;
    std::string m_name;
    std::string m_record; ///< Its name; empty for a temporary part.
    bool m_mayHaveRecord = false;
    std::uint64_t m_found = 0;
    std::optional<mode_t> m_firstMode; ///< None: it was found.
};
