#pragma once

#include "support/LocalFileWriter.h"
#include "support/linux/PartFile.h"
#include "support/linux/Place.h"

/// What a LocalFileWriter writes to: a part file, or the destination itself.
class LocalFileOutput {
public:
    std::error_code Open(const std::filesystem::path& destination, LocalFileWriter::Part kind);
    std::error_code Write(std::string_view bytes);
    std::error_code Finish(bool durable);

    bool IsDirect() const { return !m_part.IsOpen(); }
    PartFile& Part() { return m_part; }

private:
    std::error_code OpenItself(const std::filesystem::path& destination);

    Place m_place;
    bool m_replaces = false;
    struct stat m_old {}; ///< The file that it replaces.
    PartFile m_part;
    Descriptor m_itself; ///< The destination, when that is written to.
};
