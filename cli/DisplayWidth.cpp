#include "cli/DisplayWidth.h"

#include <utf8.h>

#include <algorithm>
#include <array>

namespace brevint::cli {

namespace {

struct Range {
    char32_t first;
    char32_t last;
};

// The blocks in common use, in order. What they leave out costs a crooked column, no more.
constexpr std::array<Range, 18> kNoColumn = {{{0x0300, 0x036F},
                                              {0x0483, 0x0489},
                                              {0x0591, 0x05BD},
                                              {0x0610, 0x061A},
                                              {0x064B, 0x065F},
                                              {0x093C, 0x093C},
                                              {0x0941, 0x0948},
                                              {0x094D, 0x094D},
                                              {0x0E31, 0x0E31},
                                              {0x0E34, 0x0E3A},
                                              {0x0E47, 0x0E4E},
                                              {0x1AB0, 0x1AFF},
                                              {0x1DC0, 0x1DFF},
                                              {0x200B, 0x200D},
                                              {0x20D0, 0x20FF},
                                              {0x3099, 0x309A},
                                              {0xFE00, 0xFE0F},
                                              {0xFE20, 0xFE2F}}};
constexpr std::array<Range, 18> kTwoColumns = {{{0x1100, 0x115F},
                                                {0x231A, 0x231B},
                                                {0x23E9, 0x23EC},
                                                {0x2614, 0x2615},
                                                {0x2648, 0x2653},
                                                {0x2E80, 0x303E},
                                                {0x3041, 0x4DBF},
                                                {0x4E00, 0xA4CF},
                                                {0xA960, 0xA97F},
                                                {0xAC00, 0xD7A3},
                                                {0xF900, 0xFAFF},
                                                {0xFE30, 0xFE6F},
                                                {0xFF01, 0xFF60},
                                                {0xFFE0, 0xFFE6},
                                                {0x16FE0, 0x1B2FF},
                                                {0x1F300, 0x1F64F},
                                                {0x1F680, 0x1FAFF},
                                                {0x20000, 0x3FFFD}}};

bool IsIn(const auto& ranges, char32_t c) {
    const auto range =
        std::find_if(ranges.begin(), ranges.end(), [c](const Range& r) { return c <= r.last; });
    return range != ranges.end() && c >= range->first;
}

std::size_t Columns(char32_t c) {
    if (IsIn(kNoColumn, c)) {
        return 0;
    }
    return IsIn(kTwoColumns, c) ? 2 : 1;
}

} // namespace

std::size_t DisplayWidth(std::string_view text) {
    std::size_t columns = 0;
    for (auto next = text.begin(); next != text.end();) {
        columns += Columns(utf8::next(next, text.end()));
    }
    return columns;
}

std::string ShortenFront(std::string_view text, std::size_t columns) {
    std::size_t width = DisplayWidth(text);
    if (width <= columns) {
        return std::string(text);
    }
    auto rest = text.begin();
    while (rest != text.end() && width + 1 > columns) {
        width -= Columns(utf8::next(rest, text.end()));
    }
    return columns == 0 ? std::string() : "\u2026" + std::string(rest, text.end());
}

} // namespace brevint::cli
