#include "support/HtmlUnescape.h"
#include "support/HttpEscape.h"
#include "support/Text.h"
#include "support/Utf8.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cstdio>
#include <initializer_list>
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
    // Locales that are not installed leave the one before in place.
    for (const auto* locale : {"C", "tr_TR.UTF-8", "Turkish_Turkey.1254"}) {
        std::setlocale(LC_ALL, locale);
        ExpectSame({
            {ToLower(L"ABCDEFGHIJKLMNOPQRSTUVWXYZ"), L"abcdefghijklmnopqrstuvwxyz"},
            {ToLower(L"@[`{ 0189 az"), L"@[`{ 0189 az"},
            {ToLower(L"\u00c0\u00de \u00d7\u00f7\u00df"), L"\u00e0\u00fe \u00d7\u00f7\u00df"},
            {ToLower(L"\u0141\u0178 \u03a9 \u042f\u0401"), L"\u0142\u00ff \u03c9 \u044f\u0451"},
            {ToLower(L"\u6982 \U0001d11e"), L"\u6982 \U0001d11e"},
        });
    }
    std::setlocale(LC_ALL, "C");
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

} // namespace
} // namespace brevint::test
