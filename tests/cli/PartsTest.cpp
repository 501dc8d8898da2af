// The parts of the client that need no service.

#include "cli/output/Failure.h"
#include "cli/output/Table.h"
#include "cli/run/Items.h"
#include "cli/terminal/DisplayWidth.h"
#include "cli/terminal/SafeText.h"
#include "cli/transfer/Bars.h"

#include <gtest/gtest.h>

namespace brevint::cli {
namespace {

TEST(FitsPattern, TakesStarsAndQuestionMarks) {
    const struct {
        const char* pattern;
        const char* name;
        bool fits;
    } cases[] = {
        {"*", "", true},          {"*", "概要", true},        {"*.txt", ".txt", true},
        {"*.txt", "a.txt", true}, {"*.txt", "a.txt ", false}, {"*.txt", "a.TXT", false},
        {"*.t", "a.t.t", true},   {"a*b*c", "aXbXc", true},   {"a*b*c", "abcbc", true},
        {"a*b*c", "abcd", false}, {"a*b*c", "acb", false},    {"?", "📷", true},
        {"?", "", false},         {"?", "ab", false},         {"概?", "概要", true},
        {"概?", "概", false},     {"**a?", "xab", true},      {"**a?", "a", false},
    };
    for (const auto& test : cases) {
        EXPECT_EQ(test.fits, FitsPattern(test.name, test.pattern))
            << test.pattern << " " << test.name;
    }
}

TEST(BarLine, FitsInEveryTerminal) {
    Status status;
    status.name = "/Projects/2026/Überblick — 概要.txt";
    status.state = TransferState::Running;
    status.bytesDone = 12'900'000;
    status.bytesTotal = 28'400'000;
    status.bytesPerSecond = 3'300'000;
    status.timeLeft = std::chrono::seconds(3605);
    const std::pair<std::size_t, const char*> cases[] = {
        {0, ""},
        {8, "…xt  45%"},
        {100, "…26/Überblick — 概要.txt [#########............]  45%  12.3 MiB of 27.0 MiB, "
              "3.1 MiB/s, 1:00:05 left"},
    };
    for (const auto& [columns, line] : cases) {
        EXPECT_EQ(line, BarLine(status, columns));
    }
    for (std::size_t columns = 0; columns < 200; ++columns) {
        EXPECT_LE(DisplayWidth(BarLine(status, columns)), columns);
    }
}

TEST(Text, IsShownWithoutWhatNobodySees) {
    const struct {
        std::string text;
        std::string shown;
        std::string json;
    } cases[] = {
        {"Grüße é 概要 📷", "Grüße é 概要 📷", "Grüße é 概要 📷"},
        {"a\x1b\x7f\u009B", "a\uFFFD\uFFFD\uFFFD", "a\\u001b\\u007f\\u009b"},
        {"a\nb", "a\uFFFDb", "a\nb"},
        {"\u202E\u2066", "\uFFFD\uFFFD", "\\u202e\\u2066"},
        {"a\u200Bb\u2060\uFEFF\u00AD", "a\uFFFDb\uFFFD\uFFFD\uFFFD",
         "a\\u200bb\\u2060\\ufeff\\u00ad"},
        {"\u2764\uFE0F\u3164", "\u2764\uFFFD\uFFFD", "\u2764\\ufe0f\\u3164"},
        {"\U000E0041\U000E0100", "\uFFFD\uFFFD", "\\udb40\\udc41\\udb40\\udd00"},
        {"\xFF", "\uFFFD", "\uFFFD"},
    };
    for (const auto& test : cases) {
        EXPECT_EQ(test.shown, Neutralise(test.text));
        EXPECT_EQ(test.json, NeutraliseJson(test.text));
    }
}

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

TEST(Table, CutsWhatIsTooWide) {
    const std::pair<std::string, std::string> cases[] = {
        {std::string(255, 'x'), std::string(255, 'x')},
        {std::string(256, 'x'), std::string(254, 'x') + "…"},
        {std::string(254, 'x') + "概", std::string(254, 'x') + "…"},
    };
    for (const auto& [name, shown] : cases) {
        Table table({{"Name"}, {"Size"}});
        table.AddRow({name, "1"});
        EXPECT_EQ(shown + "  1", table.Lines().back());
    }
}

} // namespace
} // namespace brevint::cli
