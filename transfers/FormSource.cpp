#include "transfers/FormSource.h"

#include "transfers/WidePath.h"

#include <algorithm>
#include <system_error>

namespace transfers {

bool FormSource::Open() {
    m_offset = 0;
    m_frame = MakeMultipartFrame(WidePath(m_path));
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
        return copy(m_frame.suffix, m_offset - fileEnd);
    }
    const std::size_t wanted =
        static_cast<std::size_t>(std::min<std::uint64_t>(size, fileEnd - m_offset));
    const std::size_t count = std::fread(buffer, 1, wanted, m_file.get());
    m_offset += count;
    if (m_onProgress) {
        m_onProgress(m_offset - m_frame.prefix.size());
    }
    return count;
}

bool FormSource::HasChanged() const {
    std::error_code unread;
    const auto size = std::filesystem::file_size(m_path, unread);
    const auto modified = unread ? m_modified : std::filesystem::last_write_time(m_path, unread);
    return unread || size != m_fileSize || modified != m_modified;
}

} // namespace transfers
