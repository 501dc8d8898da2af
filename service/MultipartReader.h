#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace brevint::service {

struct MultipartFile {
    std::string name;
    std::uint64_t size = 0;
};

/// Reads a multipart/form-data body of any length, piece by piece, that holds exactly one part,
/// named "file", with a file name and the type application/octet-stream. Whatever stands between
/// the part's header and the boundary at the end of the body is the file, so the content need not
/// be searched and may hold anything. Every refusal is a ServiceError.
class MultipartReader {
public:
    using Write = std::function<void(std::string_view)>;

    /// `write` gets the file's content and then, because the end shows only when it has come, the
    /// closing boundary: MultipartFile::size tells how much is the file.
    MultipartReader(std::string_view contentType, Write write);

    void Take(std::string_view piece);

    /// To be called when the body has ended. "No files found." when it was empty or held no part.
    MultipartFile End();

private:
    const std::string m_delimiter;
    const Write m_write;
    std::string m_head; ///< From the body's start to the part's content.
    bool m_headIsRead = false;
    MultipartFile m_file;
    std::string m_tail; ///< What was written last, as long as the closing boundary may be.
};

} // namespace brevint::service
