#include "transfers/FormSource.h"

#include "transfers/WidePath.h"

#include <algorithm>
#include <system_error>

namespace transfers {

namespace {

/// Whether the content holds the delimiter. Wherever that stands, its long row of dashes has one at
/// one of the places looked at. That is quicker to see than its beginning, of which texts with
/// Windows' line ends are full.
bool Holds(std::string_view content, std::string_view delimiter) {
    const std::size_t first = delimiter.find('-');
    const std::size_t row = delimiter.find_first_not_of('-', first) - first;
    const std::size_t rowEnd = first + row;
    for (std::size_t i = rowEnd - 1; i < content.size(); i += row) {
        if (content[i] == '-' &&
            content.substr(i + 1 - rowEnd, row - 1 + delimiter.size()).find(delimiter) !=
                std::string_view::npos) {
            return true;
        }
    }
    return false;
}

} // namespace

bool FormSource::Open() {
    m_offset = 0;
    m_frame = MakeMultipartFrame(WidePath(m_path));
    m_seam = m_frame.prefix.substr(m_frame.prefix.size() - m_frame.Delimiter().size() + 1);
    m_file = BaseHlpr::OpenRegularFile(WidePath(m_path), m_fileSize);
    std::error_code unread;
    m_modified = std::filesystem::last_write_time(m_path, unread);
    if (m_file) {
        std::setvbuf(m_file.get(), nullptr, _IONBF, 0); // it is read in large blocks
    }
    return m_file && !unread;
}

std::uint64_t FormSource::Size() const {
    return m_frame.prefix.size() + m_fileSize + m_frame.suffix.size();
}

std::size_t FormSource::Read(char* buffer, std::size_t size) {
    const std::uint64_t fileEnd = m_frame.prefix.size() + m_fileSize;
    const auto copy = [&](const std::string& text, std::uint64_t offset) {
        const std::size_t count = std::min(size, text.size() - static_cast<std::size_t>(offset));
        std::copy_n(text.data() + offset, count, buffer);
        m_offset += count;
        return count;
    };
    if (m_offset < m_frame.prefix.size()) {
        return copy(m_frame.prefix, m_offset);
    }
    if (m_offset == fileEnd && HasChanged()) {
        return 0; // the body stays incomplete, so that the service cannot take it for the file
    }
    if (m_offset >= fileEnd) {
        m_file.reset(); // on Windows nobody could delete or rename it
        return copy(m_frame.suffix, m_offset - fileEnd);
    }
    const std::size_t wanted =
        static_cast<std::size_t>(std::min<std::uint64_t>(size, fileEnd - m_offset));
    const std::size_t count = std::fread(buffer, 1, wanted, m_file.get());
    if (EndsForm({buffer, count})) {
        m_wouldEndForm = true;
        return 0;
    }
    m_offset += count;
    if (m_onProgress) {
        m_onProgress(m_offset - m_frame.prefix.size());
    }
    return count;
}

bool FormSource::EndsForm(std::string_view bytes) {
    const std::string_view delimiter = m_frame.Delimiter();
    const std::size_t kept = delimiter.size() - 1;
    m_seam.append(bytes.substr(0, kept));
    const bool endsForm = Holds(m_seam, delimiter) || Holds(bytes, delimiter);
    if (bytes.size() > kept) {
        m_seam = bytes.substr(bytes.size() - kept);
    } else {
        m_seam.erase(0, m_seam.size() - kept);
    }
    return endsForm;
}

bool FormSource::HasChanged() const {
    std::error_code unread;
    const auto size = std::filesystem::file_size(m_path, unread);
    const auto modified = unread ? m_modified : std::filesystem::last_write_time(m_path, unread);
    return unread || size != m_fileSize || modified != m_modified;
}

} // namespace transfers
