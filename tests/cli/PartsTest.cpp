// The parts of the client that need no service.

#include "brevint/InternetCache.h"
#include "cli/Failure.h"
#include "cli/SafeName.h"
#include "cli/SafeText.h"
#include "cli/Service.h"
#include "cli/ServiceUrl.h"
#include "cli/Table.h"
#include "cli/Utf8.h"

#include <gtest/gtest.h>

namespace brevint::cli {
namespace {

TEST(SafeFileName, IsTheLastSegmentWhereItIsHarmless) {
    using namespace std::string_literals;
    const std::pair<std::string, std::optional<std::string>> cases[] = {
        {"/a/b", "b"},
        {"b", "b"},
        {"/a/Überblick — 概要 📷.txt", "Überblick — 概要 📷.txt"},
        {"/a/it's 100% [1] & {more}~, #5; a=b", "it's 100% [1] & {more}~, #5; a=b"},
        {"/a/ b", " b"},
        {"/a/b..c", "b..c"},
        {"/a/nully", "nully"},
        {"/a/com10", "com10"},
        {"/a/console.log", "console.log"},
        {"", {}},
        {"/", {}},
        {"/a/", {}},
        {"/a/.", {}},
        {"/a/..", {}},
        {"/a/..\\..\\b", {}},
        {"/a/C:b", {}},
        {"/a/b:stream", {}},
        {"/a/b\n", {}},
        {"/a/\x1b[2J", {}},
        {"/a/b\0c"s, {}},
        {"/a/b\x7f", {}},
        {"/a/b.", {}},
        {"/a/b ", {}},
        {"/a/nul", {}},
        {"/a/NUL.txt", {}},
        {"/a/Com1", {}},
        {"/a/com¹", {}},
        {"/a/lpt9 .x", {}},
        {"/a/conout$", {}},
        {"/a/what?", {}},
        {"/a/.bashrc", {}},
        {"/a/b\xFF", {}},
        {"/a/\xC2\x9B[2J", {}},
        {"/a/fdp\u202E.xe", {}},
        {"/a/b\u200B", {}},
    };
    for (const auto& [path, name] : cases) {
        EXPECT_EQ(name, SafeFileName(path)) << path;
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

TEST(Table, CutsWhatIsTooWide) {
    std::string wide;
    for (int i = 0; i < 128; ++i) {
        wide += "概";
    }
    const std::pair<std::string, std::string> cases[] = {
        {std::string(255, 'x'), std::string(255, 'x')},
        {std::string(256, 'x'), std::string(254, 'x') + "…"},
        {std::string(1'000'000, 'x'), std::string(254, 'x') + "…"},
        {wide, wide.substr(0, std::size_t{127} * 3) + "…"},
    };
    for (const auto& [name, shown] : cases) {
        Table table({{"Name"}, {"Size"}});
        table.AddRow({name, "1"});
        EXPECT_EQ(shown + "  1", table.Lines().back());
        EXPECT_GE(261U, table.Lines().front().size());
    }
}

TEST(ServiceUrl, IsOneThatKeepsThePasswordSecret) {
    const struct {
        const char* url;
        const char* accepted; ///< Null: refused.
        bool insecureHttp = false;
    } cases[] = {
        {"https://host", "https://host"},
        {"HTTPS://Host.example:8443/app/x//", "HTTPS://Host.example:8443/app/x"},
        {"https://[2001:db8::1]:443/", "https://[2001:db8::1]:443"},
        {"http://127.0.0.1:8080/", "http://127.0.0.1:8080"},
        {"http://127.255.1.1", "http://127.255.1.1"},
        {"http://LocalHost/app", "http://LocalHost/app"},
        {"http://[::1]:1", "http://[::1]:1"},
        {"http://host/app", "http://host/app", true},
        {"", nullptr, true},
        {"host", nullptr, true},
        {"ftp://host", nullptr, true},
        {"https:///app", nullptr, true},
        {"https://host?x", nullptr, true},
        {"https://host#x", nullptr, true},
        {"https://host:65536", nullptr, true},
        {"https://host:0", nullptr, true},
        {"https://host:", nullptr, true},
        {"https://a\\b", nullptr, true},
        {"https://a%2eb", nullptr, true},
        {"http://user:pw@localhost", nullptr, true},
        {"http://localhost:80:80", nullptr, true},
        {"http://localhost\t", nullptr, true},
        {"http://[::1]host", nullptr, true},
        {"http://[]", nullptr, true},
        {"http://host", nullptr},
        {"http://127.0.0.1@host", nullptr},
        {"http://127.0.0.1.host", nullptr},
        {"http://127.1", nullptr},
        {"http://[::2]", nullptr},
        {"http://localhost@host", nullptr},
        {"http://localhost\\@host", nullptr},
    };
    for (const auto& test : cases) {
        std::optional<std::string> accepted;
        try {
            accepted = CheckServiceUrl(test.url, test.insecureHttp);
        } catch (const Failure& failure) {
            EXPECT_EQ(ExitCode::Usage, failure.exitCode) << test.url;
        }
        EXPECT_EQ(test.accepted != nullptr, accepted.has_value()) << test.url;
        EXPECT_EQ(test.accepted ? test.accepted : "", accepted.value_or("")) << test.url;
    }
}

TEST(Cookies, AreForgottenForAServiceInASubfolder) {
    const std::string host = "http://127.0.0.1:1";
    CInternetCache jar;
    for (const char* folder : {"/", "/app/", "/app/x/"}) {
        jar.SetCookie(ToWide(host + folder).c_str(), L"FedAuth=secret");
    }
    const std::wstring service = ToWide(host + "/app/x/Repository");
    ASSERT_NE(std::wstring::npos, jar.GetCookie(service.c_str()).find(L"secret"));
    ForgetCookies(host + "/app/x");
    EXPECT_EQ(std::wstring::npos, jar.GetCookie(service.c_str()).find(L"secret"));
}

} // namespace
} // namespace brevint::cli
