#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace brevint::cli {

// Paths of local files, as command line and messages have them: in UTF-8.

inline std::filesystem::path ToPath(std::string_view utf8) {
    return std::filesystem::path(std::u8string(utf8.begin(), utf8.end()));
}

inline std::string PathToUtf8(const std::filesystem::path& path) {
    const std::u8string text = path.u8string();
    return {text.begin(), text.end()};
}

} // namespace brevint::cli
