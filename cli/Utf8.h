#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace brevint::cli {

// The program works in UTF-8, the library takes and gives wide text. What is malformed becomes
// U+FFFD.

std::wstring ToWide(std::string_view utf8);
std::string ToUtf8(std::wstring_view wide);

std::filesystem::path ToPath(std::string_view utf8);
std::string PathToUtf8(const std::filesystem::path& path);

} // namespace brevint::cli
