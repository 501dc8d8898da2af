#pragma once

#include <string>
#include <string_view>

/// What stands around a file that is sent as a multipart/form-data body with one part named "file".
struct MultipartFrame {
    std::string prefix;
    std::string suffix;

    /// What ends the part: the content must not hold it. At the beginning of the content, the end
    /// of the prefix counts as its first bytes.
    std::string_view Delimiter() const {
        return std::string_view(suffix).substr(0, suffix.rfind("--"));
    }
};

/// The frame for a local file, which is named by the end of its path, without escaping.
MultipartFrame MakeMultipartFrame(const std::wstring& filePath);

/// The Content-Type line that belongs to such a body, with its line end.
std::wstring MultipartHeader();
