#include "responses/PortalForm.h"
#include "support/HtmlUnescape.h"
#include "support/HttpEscape.h"
#include "support/IsoTime.h"
#include "support/ResourceString.h"
#include "support/RootElement.h"
#include "support/Text.h"
#include "support/Utf8.h"
#include "tests/support/Environment.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cstdint>
#include <cstdio>
#include <initializer_list>
#include <optional>
#include <string>
#include <utility>

namespace brevint::test {
namespace {

using namespace BaseHlpr;

/// Checks that both texts of every pair are the same: what came out, and what should have.
void ExpectSame(std::initializer_list<std::pair<std::wstring, std::wstring>> pairs) {
    for (const auto& [actual, expected] : pairs) {
        EXPECT_EQ(actual, expected);
    }
}

TEST(HttpEscape, TreatsEveryByteByTheRule) {
    const std::string kept = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789*-._";
    for (int byte = 0; byte < 256; ++byte) {
        const char character = static_cast<char>(byte);
        char escaped[4];
        std::snprintf(escaped, sizeof escaped, "%%%02X", static_cast<unsigned>(byte));
        const bool isKept = kept.find(character) != std::string::npos;
        EXPECT_EQ(HttpEscape(&character, 1), isKept        ? std::string(1, character)
                                             : byte == ' ' ? "+"
                                                           : escaped);
    }
    const std::wstring wide = {L'\u00e9', L'~', wchar_t{0xD800}, L'\0', L' ', L'x'};
    EXPECT_EQ(HttpEscapeW(wide.data(), 5), L"%C3%A9%7E%EF%BF%BD%00+");
}

TEST(Text, LowerCaseIsTheSameInEveryLocale) {
    SetVariable("LOCPATH", BREVINT_LOCALES);
    const std::wstring halves = {L'A', wchar_t{0xD801}, L'B', wchar_t{0xDC00}};
    for (const auto* locale : {"C", BREVINT_TURKISH}) {
        ASSERT_NE(std::setlocale(LC_ALL, locale), nullptr) << locale;
        ExpectSame({
            {ToLower(L"ABCDEFGHIJKLMNOPQRSTUVWXYZ"), L"abcdefghijklmnopqrstuvwxyz"},
            {ToLower(L"@[`{ 0189 az"), L"@[`{ 0189 az"},
            {ToLower(L"\u00c0\u00de \u00d7\u00f7\u00df"), L"\u00e0\u00fe \u00d7\u00f7\u00df"},
            {ToLower(L"\u0130I\u0131i"), L"ii\u0131i"}, // with and without a dot
            {ToLower(L"\u0178\u0181\u01c4\u1e9e\u2c62"), L"\u00ff\u0253\u01c6\u00df\u026b"},
            {ToLower(L"\u039f\u03a3 \u03c2 \u1f88"), L"\u03bf\u03c3 \u03c2 \u1f80"}, // final sigma
            {ToLower(L"\u042f\u0401 \u10a0 \u13a0"), L"\u044f\u0451 \u2d00 \uab70"}, // Cherokee
            {ToLower(L"\U00010400\U00010428 \U0001d11e"), L"\U00010428\U00010428 \U0001d11e"},
            {ToLower(halves), {L'a', halves[1], L'b', halves[3]}},
            {GetHiddenFormData("<form action=u><input type=HIDDEN name=a>"), L"a=&"},
        });
    }
    std::setlocale(LC_ALL, "C");
}

TEST(Text, IsReplacedToItsEnd) {
    std::wstring text(L"%a%\0%", 5);
    StringReplace(text, L"%", L"%%");
    EXPECT_EQ(text, std::wstring(L"%%a%%\0%%", 8));
}

TEST(ResourceString, IsThatOfTheNamedModuleOnly) {
    EXPECT_EQ(GetResourceString(2, "NotLoaded.dll"), L"");
    EXPECT_EQ(GetResourceString(2, nullptr), L"");
}

TEST(Utf8, ConvertsBothWays) {
    const std::pair<std::string, std::wstring> cases[] = {
        {{"a\0b", 3}, {L"a\0b", 3}},
        {"\xC2\x80 \xC3\xA9 \xDF\xBF", L"\u0080 \u00e9 \u07ff"},
        {"\xE0\xA0\x80 \xE2\x82\xAC \xEF\xBF\xBD", L"\u0800 \u20ac \ufffd"},
        {"\xF0\x90\x80\x80 \xF0\x9D\x84\x9E \xF4\x8F\xBF\xBF", L"\U00010000 \U0001d11e \U0010ffff"},
    };
    for (const auto& [narrow, wide] : cases) {
        EXPECT_EQ(Utf8::ToWide(narrow), wide);
        EXPECT_EQ(Utf8::ToNarrow(wide), narrow);
    }
}

TEST(Utf8, ReplacesEachMalformedSequenceAndGoesOn) {
    ExpectSame({{Utf8::ToWide("a\xFFz"), L"a\ufffdz"},           // never a lead byte
                {Utf8::ToWide("a\xC3(b"), L"a\ufffd(b"},         // lead without trail
                {Utf8::ToWide("a\xE2\x82z"), L"a\ufffdz"},       // one trail too few
                {Utf8::ToWide("a\xE2\x82"), L"a\ufffd"},         // ends within a sequence
                {Utf8::ToWide("\xC0\xAFz"), L"\ufffdz"},         // "/" in two bytes
                {Utf8::ToWide("\xE0\x80\xAFz"), L"\ufffdz"},     // "/" in three bytes
                {Utf8::ToWide("\xED\xA0\x80z"), L"\ufffdz"},     // a surrogate
                {Utf8::ToWide("\xF4\x90\x80\x80z"), L"\ufffdz"}, // beyond the last code point
                {Utf8::ToWide("\xE9t\xE9 \xC3\xA9"), L"\ufffdt\ufffd \u00e9"}});
    for (const wchar_t surrogate : {wchar_t{0xD800}, wchar_t{0xDBFF}, wchar_t{0xDC00}}) {
        EXPECT_EQ(Utf8::ToNarrow(std::wstring{L'a', surrogate, L'z'}), "a\xEF\xBF\xBDz");
    }
}

TEST(IsoTime, IsReadWithOrWithoutZone) {
    struct Case {
        const char* text;
        std::optional<std::int64_t> seconds;
    };
    constexpr std::int64_t kNoon = 1'772'366'400; // 2026-03-01T12:00:00Z
    const Case cases[] = {
        {"1970-01-01T00:00:00Z", 0},
        {"1969-12-31 23:59:59", -1},
        {"2026-03-01T12:00:00Z", kNoon},
        {"2026-03-01T12:00", kNoon},
        {"2026-03-01t12:00:00.9999999z", kNoon},
        {"2026-03-01T13:30:00+01:30", kNoon},
        {"2026-03-01T07:00:00,5-0500", kNoon},
        {"2026-03-01T13:00:00+01", kNoon},
        {"2026-03-01", kNoon - 12 * 3600},
        {"2024-02-29T23:59:60Z", 1'709'251'200},
        {"", {}},
        {"2026-02-29", {}},
        {"2026-13-01", {}},
        {"2026-03-01T24:00:00Z", {}},
        {"2026-03-01T12", {}},
        {"2026-03-01T12:00:00Zx", {}},
        {"2026-03-01T12:00:00+1", {}},
        {"2026-03-01Z", {}},
        {"26-03-01", {}},
        {"+026-03-01", {}},
        {"yesterday", {}},
    };
    for (const Case& test : cases) {
        EXPECT_EQ(ParseIsoTime(test.text), test.seconds) << test.text;
    }
}

TEST(RootElement, IsFoundBehindWhatMayStandBeforeIt) {
    const char* const documents[] = {
        "<ResponseData/>",
        "\xEF\xBB\xBF<?xml version=\"1.0\" encoding=\"latin1\"?>\n<!-- <a> --><ResponseData>\xFF",
        "<!DOCTYPE ResponseData [<!ELEMENT a (b)>]><ResponseData a='b'>",
    };
    for (const char* const document : documents) {
        EXPECT_TRUE(HasRootElement(document, "ResponseData")) << document;
    }
    for (const char* const document :
         {"", "text", "<html><ResponseData/></html>", "<responsedata/>",
          "<x:ResponseData xmlns:x='y'/>", "<!-- <ResponseData/> -->"}) {
        EXPECT_FALSE(HasRootElement(document, "ResponseData")) << document;
    }
}

} // namespace
} // namespace brevint::test
