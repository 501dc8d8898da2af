#pragma once

#include "support/LocalFileWriter.h"
#include "support/windows/Ownership.h"
#include "support/windows/PartFile.h"

/// What a LocalFileWriter writes to: a part file, or the destination itself.
class LocalFileOutput {
public:
    std::error_code Open(const std::filesystem::path& destination, LocalFileWriter::Part kind);
    std::error_code Write(std::string_view bytes);
    std::error_code Finish(bool durable);

    bool IsDirect() const { return !m_part.IsOpen(); }
    PartFile& Part() { return m_part; }

private:
    bool Replaces() const { return m_oldAttributes != INVALID_FILE_ATTRIBUTES; }
    std::error_code LookAt(HANDLE old);
    std::error_code GrantAccess();
    std::error_code PutIntoPlace();

    std::filesystem::path m_destination;             ///< With links followed.
    DWORD m_oldAttributes = INVALID_FILE_ATTRIBUTES; ///< Of the file that it replaces, if any.
    Access m_oldAccess;
    PartFile m_part;
    HandlePtr m_itself; ///< The destination, when that is written to.
};
