#pragma once

#include "base/Ascii.h"

#include <chrono>
#include <cstddef>
#include <string>
#include <string_view>

/// What LocalFileWriter's part files are called, and how much and how long they are trusted: the
/// same on every target.
namespace PartFileRules {

/// A part that nobody has written to for that long is begun anew.
inline constexpr std::chrono::seconds kLongestRest = std::chrono::hours(7 * 24);
/// Bytes of a record.
inline constexpr std::size_t kLongestRecord = std::size_t{64} * 1024;

inline constexpr std::string_view kBeginning = ".brevint-";
inline constexpr const char* kPartEnding = ".part";
inline constexpr const char* kRecordEnding = ".record";

/// Whether a file of that name may be a part or its record.
inline bool IsPartName(std::string_view name) {
    return base::ToLower(name.substr(0, kBeginning.size())) == kBeginning;
}

/// A name without ending that no other file has.
std::string UniqueStem();

/// The name without ending of a destination's part and record: the same for the same bytes.
std::string StemFor(std::string_view destination);

} // namespace PartFileRules
