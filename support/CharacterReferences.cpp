#include "support/CharacterReferences.h"

#include <algorithm>
#include <charconv>

namespace {

constexpr unsigned kReplacement = 0xFFFD;

/// The characters of windows-1252 from 128 on. Those that it lacks stay what they are.
constexpr unsigned kWindows1252[] = {
    0x20AC, 0x81,   0x201A, 0x192,  0x201E, 0x2026, 0x2020, 0x2021, 0x2C6,  0x2030, 0x160,
    0x2039, 0x152,  0x8D,   0x17D,  0x8F,   0x90,   0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x2DC,  0x2122, 0x161,  0x203A, 0x153,  0x9D,   0x17E,  0x178,
};

/// Whether a text that libxml2 reads may hold the character.
bool IsCharacter(unsigned code) {
    return code == '\t' || code == '\n' || code == '\r' || (code >= 0x20 && code <= 0xD7FF) ||
           (code >= 0xE000 && code <= 0xFFFD) || (code >= 0x10000 && code <= 0x10FFFF);
}

unsigned Shown(unsigned code) {
    if (code >= 128 && code < 128 + std::size(kWindows1252)) {
        return kWindows1252[code - 128];
    }
    return IsCharacter(code) ? code : kReplacement;
}

} // namespace

std::string WithSoundReferences(std::string_view page) {
    constexpr std::string_view kStart = "&#";
    std::string sound;
    sound.reserve(page.size());
    for (;;) {
        const std::size_t hit = std::min(page.find(kStart), page.size());
        sound += page.substr(0, hit);
        page.remove_prefix(hit);
        if (page.empty()) {
            return sound;
        }
        page.remove_prefix(kStart.size());
        const bool hexadecimal = page.starts_with('x') || page.starts_with('X');
        const char* const digits = page.data() + (hexadecimal ? 1 : 0);
        unsigned code = 0;
        const auto [end, error] =
            std::from_chars(digits, page.data() + page.size(), code, hexadecimal ? 16 : 10);
        if (end == digits) {
            sound += "&amp;#";
            continue;
        }
        const unsigned shown = error == std::errc() ? Shown(code) : kReplacement;
        if (shown == code) {
            sound += kStart;
            continue;
        }
        sound += std::string(kStart) + std::to_string(shown) + ';';
        page.remove_prefix(static_cast<std::size_t>(end - page.data()));
        page.remove_prefix(page.starts_with(';') ? 1 : 0);
    }
}
