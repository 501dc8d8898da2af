#include "service/MultipartFile.h"

#include "base/Ascii.h"
#include "service/ServiceError.h"

namespace brevint::service {

namespace {

constexpr std::string_view kLineEnd = "\r\n";

ServiceError Malformed(const std::string& what) {
    return BadRequest("The multipart body is malformed: " + what);
}

// Takes `prefix` off the front of `text`; false when it does not stand there.
bool Consume(std::string_view& text, std::string_view prefix) {
    if (!text.starts_with(prefix))
        return false;
    text.remove_prefix(prefix.size());
    return true;
}

std::string ReadBoundary(std::string_view contentType) {
    const auto semicolon = contentType.find(';');
    if (!base::EqualsIgnoreCase(base::Trim(contentType.substr(0, semicolon)),
                                "multipart/form-data"))
        throw ServiceError(415, "The body must be multipart/form-data.");
    std::string_view parameter;
    if (semicolon != std::string_view::npos)
        parameter = base::Trim(contentType.substr(semicolon + 1));
    std::string boundary;
    if (Consume(parameter, "boundary="))
        boundary = parameter;
    if (boundary.size() >= 2 && boundary.front() == '"' && boundary.back() == '"')
        boundary = boundary.substr(1, boundary.size() - 2);
    if (boundary.empty() || boundary.size() > 70 ||
        boundary.find_first_of("\"; \t,") != std::string::npos)
        throw Malformed("the header declares no proper boundary.");
    return boundary;
}

std::string ReadFileName(std::string_view disposition) {
    if (!Consume(disposition, "form-data; name=\"file\"; filename=\""))
        throw Malformed("the part is not a file named \"file\".");
    const auto quote = disposition.find('"');
    if (quote == std::string_view::npos || quote + 1 != disposition.size())
        throw Malformed("the file name is not closed by a quote.");
    return std::string(disposition.substr(0, quote));
}

// The value of the part's header `name`, which must stand there once.
std::string_view PartHeader(std::string_view block, std::string_view name) {
    std::string_view value;
    bool found = false;
    while (!block.empty()) {
        const auto end = block.find(kLineEnd);
        if (end == std::string_view::npos)
            throw Malformed("a header line does not end.");
        const std::string_view line = block.substr(0, end);
        block.remove_prefix(end + kLineEnd.size());
        const auto colon = line.find(':');
        if (colon == std::string_view::npos)
            throw Malformed("a header line has no colon.");
        if (!base::EqualsIgnoreCase(line.substr(0, colon), name))
            continue;
        if (found)
            throw Malformed("header " + std::string(name) + " is doubled.");
        value = base::Trim(line.substr(colon + 1));
        found = true;
    }
    if (!found)
        throw Malformed("header " + std::string(name) + " is missing.");
    return value;
}

} // namespace

MultipartFile ReadMultipartFile(std::string_view contentType, std::string_view body) {
    const std::string delimiter = "--" + ReadBoundary(contentType);
    if (body.empty())
        throw NoFilesFound();

    std::string_view rest = body;
    if (!Consume(rest, delimiter))
        throw Malformed("it does not begin with its boundary.");
    if (rest == "--" || rest == "--\r\n")
        throw NoFilesFound();
    if (!Consume(rest, kLineEnd))
        throw Malformed("the first boundary does not end its line.");

    const auto blankLine = rest.find("\r\n\r\n");
    if (blankLine == std::string_view::npos)
        throw Malformed("the part's headers do not end.");
    const std::string_view headers = rest.substr(0, blankLine + kLineEnd.size());
    MultipartFile file;
    file.name = ReadFileName(PartHeader(headers, "Content-Disposition"));
    if (!base::EqualsIgnoreCase(PartHeader(headers, "Content-Type"), "application/octet-stream"))
        throw Malformed("the part is not application/octet-stream.");
    rest.remove_prefix(blankLine + 2 * kLineEnd.size());

    file.offset = body.size() - rest.size();
    file.size = rest.find("\r\n" + delimiter);
    if (file.size == std::string_view::npos)
        throw Malformed("the last boundary is missing.");
    rest.remove_prefix(file.size + kLineEnd.size() + delimiter.size());
    if (rest.starts_with(kLineEnd))
        throw Malformed("it holds more than one part.");
    if (rest != "--\r\n" && rest != "--")
        throw Malformed("something stands after the last boundary.");
    return file;
}

} // namespace brevint::service
