#include "transfers/HttpFields.h"
#include "transfers/Attempts.h"

#include <gtest/gtest.h>

#include <string>

namespace brevint::test {
namespace {

using transfers::kUnknownSize;

TEST(HttpFields, ReadAContentRangeStrictly) {
    struct Case {
        const char* text;
        transfers::ContentRange range;
    };
    constexpr Case kGood[] = {{"bytes 4-9/10", {4, 9, 10}},
                              {"bytes 0-0/*", {0, 0, kUnknownSize}},
                              {"bytes */10", {kUnknownSize, kUnknownSize, 10}}};
    for (const Case& test : kGood) {
        const auto range = transfers::ParseContentRange(test.text);
        ASSERT_TRUE(range) << test.text;
        EXPECT_EQ(range->first, test.range.first);
        EXPECT_EQ(range->last, test.range.last);
        EXPECT_EQ(range->total, test.range.total);
    }
    constexpr const char* kBad[] = {"",
                                    "bytes",
                                    "bytes 4-9/10x",
                                    "bytes 4-9",
                                    "bytes 9-4/10",
                                    "bytes 4-10/10",
                                    "bytes */*",
                                    "lines 4-9/10",
                                    "bytes -9/10",
                                    "bytes 4-99999999999999999999/*"};
    for (const char* const text : kBad) {
        EXPECT_FALSE(transfers::ParseContentRange(text)) << text;
    }
}

TEST(HttpFields, SayHowLongToPause) {
    using std::chrono::seconds;
    constexpr seconds kNoWish(3); // the first pause, and what stands for no wish
    constexpr seconds kLongest = std::chrono::minutes(10);
    transfers::TransferSettings settings;
    settings.firstPause = kNoWish;
    const std::pair<std::wstring, seconds> wishes[] = {
        {L"100", seconds(100)},
        {L"0", kNoWish},
        {L"99999999999999999999", kLongest},
        {L"Sun, 06 Nov 1994 08:49:37 GMT", kNoWish},
        {L"Fri, 06 Nov 9994 08:49:37 GMT", kLongest},
        {L"Fri, 06 Nov 9994 08:49:37 CET", kNoWish},
        {L"Fri, 36 Nov 9994 08:49:37 GMT", kNoWish},
        {L"Fri, 06 ovD 9994 08:49:37 GMT", kNoWish},
        {L"-100", kNoWish},
        {L"100 s", kNoWish},
        {L"", kNoWish},
    };
    for (const auto& [text, wanted] : wishes) {
        const auto pause = transfers::Attempts(settings).NextPause(text);
        ASSERT_TRUE(pause);
        EXPECT_LE(*pause, wanted) << std::string(text.begin(), text.end());
        EXPECT_GE(*pause, wanted == kNoWish ? wanted / 2 : wanted);
    }
}

} // namespace
} // namespace brevint::test
