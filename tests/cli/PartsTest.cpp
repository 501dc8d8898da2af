// The parts of the client that need no service.

#include "brevint/ErrorCodes.h"
#include "brevint/FolderItem.h"
#include "brevint/IGetFolderContentsResponse.h"
#include "brevint/InternetCache.h"
#include "cli/output/Failure.h"
#include "cli/output/Table.h"
#include "cli/service/Service.h"
#include "cli/service/Verdict.h"
#include "cli/session/ServiceUrl.h"
#include "cli/terminal/DisplayWidth.h"
#include "cli/terminal/SafeText.h"
#include "cli/transfer/SafeName.h"
#include "support/Utf8.h"

#include <gtest/gtest.h>

namespace brevint::cli {
namespace {

TEST(SafeFileName, IsTheLastSegmentWhereItIsHarmless) {
    using namespace std::string_literals;
    for (const std::string name :
         {"b", "Überblick — 概要 📷.txt", "it's 100% [1] & {more}~, #5; a=b", " b", "b..c", "nully",
          "com10", "console.log"}) {
        EXPECT_EQ(name, SafeFileName("/a/" + name)) << name;
    }
    for (const std::string& name :
         {""s,      "."s,       ".."s,    "..\\..\\b"s,   "C:b"s,          "b:stream"s,
          "b\n"s,   "\x1b[2J"s, "b\0c"s,  "b\x7f"s,       "b."s,           "b "s,
          "nul"s,   "NUL.txt"s, "Com1"s,  "com¹"s,        "lpt9 .x"s,      "conout$"s,
          "what?"s, ".bashrc"s, "b\xFF"s, "\xC2\x9B[2J"s, "fdp\u202E.xe"s, "b\u200B"s}) {
        EXPECT_EQ(std::nullopt, SafeFileName("/a/" + name)) << name;
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

/// The address as the program uses it; nothing when it is refused.
std::optional<std::string> Accepted(const std::string& url, bool insecureHttp) {
    try {
        return CheckServiceUrl(url, insecureHttp);
    } catch (const Failure& failure) {
        EXPECT_EQ(ExitCode::Usage, failure.exitCode) << url;
        return std::nullopt;
    }
}

TEST(ServiceUrl, IsOneThatKeepsThePasswordSecret) {
    for (const char* safe :
         {"https://host", "HTTPS://Host.example:8443/app/x", "https://[2001:db8::1]:443",
          "http://127.255.1.1:8080", "http://LocalHost/app", "http://[::1]:1"}) {
        EXPECT_EQ(safe, Accepted(std::string(safe) + "//", false));
    }
    for (const char* clear : {"http://host/app", "http://127.0.0.1.host", "http://127.1",
                              "http://[::2]", "http://localhost.example"}) {
        EXPECT_EQ(std::nullopt, Accepted(clear, false)) << clear;
        EXPECT_EQ(clear, Accepted(clear, true));
    }
    for (const char* wrong :
         {"", "host", "ftp://host", "https:///app", "https://host?x", "https://host#x",
          "https://host:65536", "https://host:0", "https://host:", "https://a\\b", "https://a%2eb",
          "http://user:pw@localhost", "http://127.0.0.1@host", "http://localhost:80:80",
          "http://localhost\t", "http://localhost\\@host", "http://[::1]host", "http://[]"}) {
        EXPECT_EQ(std::nullopt, Accepted(wrong, true)) << wrong;
    }
}

/// A listing whose records there is no memory for.
class ListingWithoutMemory : public IGetFolderContentsResponse {
public:
    bool GetSucceeded() const override { return m_code == ErrorCode::Success; }
    double GetErrorCode() const override { return m_code; }
    void GetFolderContents(std::vector<CFolderItem*>&) override { m_code = ErrorCode::EmptyReply; }

private:
    double m_code = ErrorCode::Success;
};

TEST(Listing, IsNotEmptyForWantOfMemory) {
    ListingWithoutMemory listing;
    EXPECT_THROW(TakeRecords(listing, &ListingWithoutMemory::GetFolderContents), std::bad_alloc);
}

TEST(Cookies, AreForgottenForAServiceInASubfolder) {
    const std::string host = "http://127.0.0.1:1";
    CInternetCache jar;
    for (const char* folder : {"/", "/app/", "/app/x/"}) {
        jar.SetCookie(Utf8::ToWide(host + folder).c_str(), L"FedAuth=secret");
    }
    const std::wstring service = Utf8::ToWide(host + "/app/x/Repository");
    ASSERT_NE(std::wstring::npos, jar.GetCookie(service.c_str()).find(L"secret"));
    ForgetCookies(host + "/app/x");
    EXPECT_EQ(std::wstring::npos, jar.GetCookie(service.c_str()).find(L"secret"));
}

} // namespace
} // namespace brevint::cli
