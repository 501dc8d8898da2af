#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace transfers {

/// What is written beside a part file, so that a later transfer knows what it is a part of.
struct PartRecord {
    std::wstring url;       ///< Of the file at the service.
    std::wstring validator; ///< A strong ETag, or else Last-Modified. Not empty.
    std::uint64_t total = 0;
    std::uint64_t kept = 0; ///< Bytes of the part when it was left; 0 while it is being written.

    std::string Text() const;
    /// Nothing when the text is no record.
    static std::optional<PartRecord> Parse(std::string_view text);
};

} // namespace transfers
