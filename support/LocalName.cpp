#include "support/LocalName.h"

#include "base/Ascii.h"
#include "support/PartFileRules.h"
#include "support/Utf8.h"

#include <utf8proc.h>

#include <algorithm>
#include <array>
#include <bit>
#include <filesystem>
#include <vector>

namespace {

constexpr bool kIsWindows = std::filesystem::path::preferred_separator == '\\';

/// Bytes of a name on Linux, units of UTF-16 on Windows.
constexpr std::size_t kLongestName = 255;

/// Names that Windows takes for devices, whatever extension they bear.
constexpr std::array<std::string_view, 6> kDevices = {"con", "prn",    "aux",
                                                      "nul", "conin$", "conout$"};
/// The same, when a digit follows, be it a raised one.
constexpr std::array<std::string_view, 2> kNumberedDevices = {"com", "lpt"};
constexpr std::array<std::string_view, 3> kRaisedDigits = {"\u00B9", "\u00B2", "\u00B3"};
/// Files that Windows obeys when it shows the folder or the disk.
constexpr std::array<std::string_view, 2> kObeyed = {"desktop.ini", "autorun.inf"};

bool IsOneOf(std::string_view text, const auto& list) {
    return std::ranges::find(list, text) != list.end();
}

bool IsDevice(std::string_view lowerName) {
    std::string_view stem = lowerName.substr(0, lowerName.find('.'));
    stem = stem.substr(0, stem.find_last_not_of(' ') + 1);
    if (!IsOneOf(stem.substr(0, 3), kNumberedDevices)) {
        return IsOneOf(stem, kDevices);
    }
    const std::string_view number = stem.substr(3);
    return (number.size() == 1 && base::IsDigit(number.front())) || IsOneOf(number, kRaisedDigits);
}

/// Controls, line separators, and what turns the direction of writing. The two joiners are none of
/// these: Persian and joined emoji are written with them.
bool IsSteering(char32_t character) {
    constexpr char32_t kNonJoiner = 0x200C;
    constexpr char32_t kJoiner = 0x200D;
    switch (utf8proc_category(static_cast<utf8proc_int32_t>(character))) {
    case UTF8PROC_CATEGORY_CC:
    case UTF8PROC_CATEGORY_ZL:
    case UTF8PROC_CATEGORY_ZP: return true;
    case UTF8PROC_CATEGORY_CF: return character != kNonJoiner && character != kJoiner;
    default: return false;
    }
}

} // namespace

bool IsNameOnWindows(std::string_view name) {
    const std::string lower = base::ToLower(name);
    return !name.empty() && name.find_first_of("\\/:*?\"<>|") == std::string_view::npos &&
           name.back() != '.' && name.back() != ' ' && !IsDevice(lower) && !IsOneOf(lower, kObeyed);
}

bool IsLocalName(std::string_view name) {
    const bool isText = Utf8::IsValid(name) && name.find('\0') == std::string_view::npos;
    if (!isText || name.empty() || name == "." || name == ".." ||
        name.find('/') != std::string_view::npos || PartFileRules::IsPartName(name) ||
        (kIsWindows && !IsNameOnWindows(name))) {
        return false;
    }
    const std::wstring wide = Utf8::ToWide(name);
    for (std::wstring_view rest = wide; !rest.empty();) {
        if (IsSteering(Utf8::NextCodePoint(rest))) {
            return false;
        }
    }
    return (kIsWindows ? wide.size() : name.size()) <= kLongestName;
}

std::string NameKey(std::string_view name) {
    const std::string valid = Utf8::Repaired(name);
    // An enumeration of bits, to be combined.
    constexpr auto kOptions = std::bit_cast<utf8proc_option_t>(UTF8PROC_STABLE | UTF8PROC_COMPOSE |
                                                               UTF8PROC_CASEFOLD | UTF8PROC_IGNORE);
    const auto decompose = [&](std::vector<utf8proc_int32_t>& into) {
        return utf8proc_decompose(reinterpret_cast<const utf8proc_uint8_t*>(valid.data()),
                                  static_cast<utf8proc_ssize_t>(valid.size()), into.data(),
                                  static_cast<utf8proc_ssize_t>(into.size()), kOptions);
    };
    std::vector<utf8proc_int32_t> characters;
    const utf8proc_ssize_t count = decompose(characters);
    characters.resize(static_cast<std::size_t>(count) + 1); // a zero comes to stand at the end
    decompose(characters);
    // In place: no character has more bytes in UTF-8 than it has here.
    const utf8proc_ssize_t bytes = utf8proc_reencode(characters.data(), count, kOptions);
    return {reinterpret_cast<const char*>(characters.data()), static_cast<std::size_t>(bytes)};
}
