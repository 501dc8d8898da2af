#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace brevint::service {

/// Where the sent file lies in a multipart body.
struct MultipartFile {
    std::string name;
    std::size_t offset = 0;
    std::size_t size = 0;
};

/// Reads a multipart/form-data body that holds exactly one part, named "file", with a file name and
/// the type application/octet-stream; the boundary is the one that the Content-Type declares, and
/// nothing stands before the first or after the last. Throws ServiceError otherwise: "No files
/// found." when the body is empty or holds no part.
MultipartFile ReadMultipartFile(std::string_view contentType, std::string_view body);

} // namespace brevint::service
