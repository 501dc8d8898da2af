#pragma once

#include "support/Utf8.h"

#include <filesystem>
#include <string>
#include <utility>

namespace transfers {

/// A path as the library's other calls take it. The system's own text on Windows; on Linux, where
/// std::filesystem goes by the locale, from UTF-8.
inline std::wstring WidePath(const std::filesystem::path& path) {
    if constexpr (std::is_same_v<std::filesystem::path::value_type, wchar_t>) {
        return std::wstring(path.native().begin(), path.native().end());
    } else {
        return Utf8::ToWide(std::string(path.native().begin(), path.native().end()));
    }
}

} // namespace transfers
