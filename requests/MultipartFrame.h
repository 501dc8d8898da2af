#pragma once

#include <string>

/// What stands around a file that is sent as a multipart/form-data body with one part named "file".
struct MultipartFrame {
    std::string prefix;
    std::string suffix;
};

/// The frame for a local file, which is named by the end of its path, without escaping.
MultipartFrame MakeMultipartFrame(const std::wstring& filePath);

/// The Content-Type line that belongs to such a body, with its line end.
std::wstring MultipartHeader();
