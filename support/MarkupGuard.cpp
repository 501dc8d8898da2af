#include "support/MarkupGuard.h"

#include <algorithm>

namespace {

using std::string_view;

constexpr std::size_t kMostAttributes = 256;
/// A tag that is shorter has fewer attributes: each takes a name, "=" and two quotes at least.
constexpr std::size_t kShortTag = 4 * kMostAttributes;
constexpr std::size_t kLongestSubset = 1024;
/// Where libxml2's HTML parser cuts a name, and takes the rest for the next one.
constexpr std::size_t kLongestName = 100;
constexpr string_view kBlanks = " \t\r\n";

bool IsLetter(char character) {
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z');
}

bool IsNameCharacter(char character) {
    return IsLetter(character) || (character >= '0' && character <= '9') ||
           string_view("_:.-").find(character) != string_view::npos || (character & 0x80) != 0;
}

void Skip(string_view& text, std::size_t count) {
    text.remove_prefix(std::min(count, text.size()));
}

void SkipBlanks(string_view& text) {
    Skip(text, text.find_first_not_of(kBlanks));
}

/// Up to the mark and over it, or to the end.
void SkipPast(string_view& text, string_view mark) {
    const std::size_t hit = text.find(mark);
    Skip(text, hit == string_view::npos ? hit : hit + mark.size());
}

bool StartsWithWord(string_view text, string_view lowerCaseWord) {
    return text.size() >= lowerCaseWord.size() &&
           std::ranges::equal(text.substr(0, lowerCaseWord.size()), lowerCaseWord, {},
                              [](char c) { return IsLetter(c) ? static_cast<char>(c | 0x20) : c; });
}

/// Skips what stands behind an attribute's "=".
void SkipValue(string_view& text) {
    SkipBlanks(text);
    if (text.starts_with('"') || text.starts_with('\'')) {
        const char quote = text.front();
        Skip(text, 1);
        SkipPast(text, string_view(&quote, 1));
    } else {
        Skip(text, text.find_first_of(" \t\r\n>"));
    }
}

/// Skips a start tag, whose "<" has been taken, and counts its attributes as libxml2 does.
std::size_t SkipTag(string_view& text) {
    std::size_t attributes = 0;
    Skip(text, text.find_first_of(" \t\r\n/>"));
    for (;;) {
        Skip(text, text.find_first_not_of(" \t\r\n/"));
        if (text.empty() || text.front() == '>' || text.front() == '<') {
            return attributes;
        }
        const auto* const nameEnd = std::ranges::find_if_not(text, IsNameCharacter);
        const auto length = static_cast<std::size_t>(nameEnd - text.begin());
        if (length == 0) {
            Skip(text, text.find_first_of(" \t\r\n>"));
            continue;
        }
        attributes += 1 + length / kLongestName;
        Skip(text, length);
        SkipBlanks(text);
        if (text.starts_with('=')) {
            Skip(text, 1);
            SkipValue(text);
        }
    }
}

/// Skips a document type declaration, whose "<!" has been taken. False for one that is refused.
bool SkipDocumentType(string_view& text) {
    const std::size_t end = text.find_first_of("[>");
    if (end == string_view::npos || text[end] == '>') {
        Skip(text, end);
        return true;
    }
    Skip(text, end);
    const string_view subset = text.substr(0, text.find(']'));
    Skip(text, subset.size());
    return subset.size() <= kLongestSubset && subset.find_first_of("\"'") == string_view::npos &&
           subset.find("--") == string_view::npos;
}

} // namespace

bool IsProportionate(string_view text, MarkupMode mode) {
    const bool strict = mode == MarkupMode::Strict;
    std::size_t sharedAttributes = 0;
    for (;;) {
        SkipPast(text, "<");
        if (text.empty()) {
            return true;
        }
        if (text.starts_with("!--")) {
            Skip(text, 3);
            const std::size_t hyphens = text.find("--");
            if (strict && hyphens != string_view::npos &&
                !text.substr(hyphens + 2).starts_with('>')) {
                return false;
            }
            SkipPast(text, "-->");
        } else if (strict && text.starts_with("![CDATA[")) {
            SkipPast(text, "]]>");
        } else if (strict && text.starts_with('?')) {
            SkipPast(text, "?>");
        } else if (strict && text.starts_with('!')) {
            if (!SkipDocumentType(text)) {
                return false;
            }
        } else if (strict && text.substr(0, kShortTag).find('<') != string_view::npos) {
            // Well-formed, a "<" stands behind the tag and not within it.
            continue;
        } else if (IsLetter(text.front()) || (strict && IsNameCharacter(text.front()))) {
            const auto isTagOf = [=](string_view a, string_view b) {
                return !strict && (StartsWithWord(text, a) || StartsWithWord(text, b));
            };
            const bool isRaw = isTagOf("script", "style");
            const bool isShared = isTagOf("html", "body");
            const std::size_t attributes = SkipTag(text);
            // Those of every further tag of this kind are given to the one element.
            sharedAttributes += isShared ? attributes : 0;
            if (std::max(attributes, sharedAttributes) > kMostAttributes) {
                return false;
            }
            if (isRaw) {
                SkipPast(text, "</");
            }
        }
    }
}
