#include "cli/terminal/DisplayWidth.h"

#include <gtest/gtest.h>

namespace brevint::cli {
namespace {

TEST(DisplayWidth, IsWhatTheTextTakesOnATerminal) {
    const struct {
        const char* text;
        std::size_t columns;
    } cases[] = {
        {"", 0},
        {"a\u00e9\ufffd\u2026", 4},
        {"\u6982\u8981 \uac00 \uff21 \U0001f600", 13},    // wide ones
        {"e\u0301 \u05d0\u05b8 \u0628\u064e a\u200d", 7}, // marks on their letters
        {"\u0915\u093f \u0e01\u0e33", 5},                 // marks beside them
        {"\u1112\u1161\u11ab", 2},                        // a syllable in pieces
        {"\ue000 \u0378", 3},                             // private, and not assigned
    };
    for (const auto& [text, columns] : cases) {
        EXPECT_EQ(columns, DisplayWidth(text)) << text;
    }
}

} // namespace
} // namespace brevint::cli
