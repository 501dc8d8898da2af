#include "service/MultipartReader.h"

#include "base/Ascii.h"
#include "service/ServiceError.h"

#include <algorithm>
#include <utility>

namespace brevint::service {

namespace {

constexpr std::string_view kLineEnd = "\r\n";
constexpr std::size_t kHeadLimit = 64 * 1024;

ServiceError Malformed(const std::string& what) {
    return BadRequest("The multipart body is malformed: " + what);
}

// Takes `prefix` off the front of `text`; false when it does not stand there.
bool Consume(std::string_view& text, std::string_view prefix) {
    if (!text.starts_with(prefix)) {
        return false;
    }
    text.remove_prefix(prefix.size());
    return true;
}

std::string ReadBoundary(std::string_view contentType) {
    const auto semicolon = contentType.find(';');
    if (!base::EqualsIgnoreCase(base::Trim(contentType.substr(0, semicolon)),
                                "multipart/form-data")) {
        throw ServiceError(415, "The body must be multipart/form-data.");
    }
    std::string_view parameter;
    if (semicolon != std::string_view::npos) {
        parameter = base::Trim(contentType.substr(semicolon + 1));
    }
    std::string boundary;
    if (Consume(parameter, "boundary=")) {
        boundary = parameter;
    }
    if (boundary.size() >= 2 && boundary.front() == '"' && boundary.back() == '"') {
        boundary = boundary.substr(1, boundary.size() - 2);
    }
    if (boundary.empty() || boundary.size() > 70 ||
        boundary.find_first_of("\"; \t,") != std::string::npos) {
        throw Malformed("the header declares no proper boundary.");
    }
    return boundary;
}

std::string ReadFileName(std::string_view disposition) {
    if (!Consume(disposition, R"(form-data; name="file"; filename=")")) {
        throw Malformed("the part is not a file named \"file\".");
    }
    const auto quote = disposition.find('"');
    if (quote == std::string_view::npos || quote + 1 != disposition.size()) {
        throw Malformed("the file name is not closed by a quote.");
    }
    return std::string(disposition.substr(0, quote));
}

// The value of the part's header `name`, which must stand there once.
std::string_view PartHeader(std::string_view block, std::string_view name) {
    std::string_view value;
    bool found = false;
    while (!block.empty()) {
        const auto end = block.find(kLineEnd);
        if (end == std::string_view::npos) {
            throw Malformed("a header line does not end.");
        }
        const std::string_view line = block.substr(0, end);
        block.remove_prefix(end + kLineEnd.size());
        const auto colon = line.find(':');
        if (colon == std::string_view::npos) {
            throw Malformed("a header line has no colon.");
        }
        if (!base::EqualsIgnoreCase(line.substr(0, colon), name)) {
            continue;
        }
        if (found) {
            throw Malformed("header " + std::string(name) + " is doubled.");
        }
        value = base::Trim(line.substr(colon + 1));
        found = true;
    }
    if (!found) {
        throw Malformed("header " + std::string(name) + " is missing.");
    }
    return value;
}

// The file's name from the body's `head`, which ends with the part's last header line.
std::string ReadHead(std::string_view head, std::string_view delimiter) {
    if (!Consume(head, delimiter)) {
        throw Malformed("it does not begin with its boundary.");
    }
    if (!Consume(head, kLineEnd)) {
        throw Malformed("the first boundary does not end its line.");
    }
    if (!base::EqualsIgnoreCase(PartHeader(head, "Content-Type"), "application/octet-stream")) {
        throw Malformed("the part is not application/octet-stream.");
    }
    return ReadFileName(PartHeader(head, "Content-Disposition"));
}

} // namespace

MultipartReader::MultipartReader(std::string_view contentType, Write write)
    : m_delimiter("--" + ReadBoundary(contentType)), m_write(std::move(write)) {}

void MultipartReader::Take(std::string_view piece) {
    if (!m_headIsRead) {
        m_head += piece;
        const auto blankLine = m_head.find("\r\n\r\n");
        if (blankLine == std::string::npos && m_head.size() > kHeadLimit) {
            throw Malformed("the part's headers do not end.");
        }
        if (blankLine == std::string::npos) {
            return;
        }
        const auto end = blankLine + kLineEnd.size();
        m_file.name = ReadHead(std::string_view(m_head).substr(0, end), m_delimiter);
        m_headIsRead = true;
        piece.remove_prefix(end + kLineEnd.size() - (m_head.size() - piece.size()));
        m_head.clear();
    }
    m_write(piece);
    m_file.size += piece.size();
    const std::size_t longest = m_delimiter.size() + 3 * kLineEnd.size();
    m_tail += piece.substr(piece.size() - std::min(piece.size(), longest));
    m_tail.erase(0, m_tail.size() - std::min(m_tail.size(), longest));
}

MultipartFile MultipartReader::End() {
    if (!m_headIsRead) {
        if (m_head.empty() || m_head == m_delimiter + "--" || m_head == m_delimiter + "--\r\n") {
            throw NoFilesFound();
        }
        throw Malformed("the part's headers do not end.");
    }
    std::string closing = "\r\n" + m_delimiter + "--";
    if (m_tail.ends_with(kLineEnd)) {
        closing += kLineEnd;
    }
    if (!m_tail.ends_with(closing)) {
        throw Malformed("the last boundary is missing.");
    }
    m_file.size -= closing.size();
    return std::move(m_file);
}

} // namespace brevint::service
