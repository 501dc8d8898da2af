#pragma once

#include "support/Utf8.h"

#include <filesystem>
#include <string>
#include <string_view>
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

/// A path in UTF-8. What is no valid text becomes U+FFFD.
inline std::string NarrowPath(const std::filesystem::path& path) {
    return Utf8::ToNarrow(WidePath(path));
}

/// The path that a text in UTF-8 stands for.
inline std::filesystem::path ToPath(std::string_view text) {
    return std::u8string(text.begin(), text.end());
}

} // namespace transfers
