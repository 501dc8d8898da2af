// The parts of the client that need no service.

#include "cli/Failure.h"
#include "cli/SafeName.h"
#include "cli/SafeText.h"
#include "cli/ServiceUrl.h"
#include "cli/Session.h"

#include <gtest/gtest.h>

namespace brevint::cli {
namespace {

TEST(SafeFileName, RefusesWhatLeadsElsewhere) {
    using namespace std::string_literals;
    for (const std::string& path :
         {""s, "/"s, "/a/"s, "/a/."s, "/a/.."s, "/a/..\\..\\b"s, "/a/C:b"s, "/a/b:stream"s,
          "/a/b\n"s, "/a/\x1b[2J"s, "/a/b\0c"s, "/a/b\x7f"s, "/a/b."s, "/a/b "s, "/a/nul"s,
          "/a/NUL.txt"s, "/a/Com1"s, "/a/lpt9 .x"s, "/a/what?"s}) {
        EXPECT_EQ(std::nullopt, SafeFileName(path)) << path;
    }
    for (const std::string name :
         {".bashrc", "conout$", "com¹", "b\xFF", "\xC2\x9B[2J", "fdp\xE2\x80\xAE.xe"}) {
        EXPECT_EQ(std::nullopt, SafeFileName("/a/" + name)) << name;
    }
}

TEST(Neutralise, LeavesNothingThatSteersATerminal) {
    EXPECT_EQ("Grüße 概要 📷", Neutralise("Grüße 概要 📷"));
    EXPECT_EQ("\uFFFD[31mred\uFFFD\uFFFD\uFFFD", Neutralise("\x1b[31mred\r\n\t"));
    EXPECT_EQ("a\uFFFDb\uFFFDc\uFFFDd", Neutralise("a\u009Bb\u202Ec\x7f"
                                                   "d"));
    EXPECT_EQ("a\uFFFDb", Neutralise("a\xFF"
                                     "b"));
}

TEST(Session, IsRefusedWhenDamaged) {
    for (const std::string text : {"", "{}", "[1", R"({"url":"ftp://a","user":"a","cookies":"a"})",
                                   R"({"url":1,"user":"a","cookies":"a"})"}) {
        EXPECT_FALSE(ParseSession(text)) << text;
    }
}

TEST(ServiceUrl, RefusesTheRest) {
    for (const char* url :
         {"", "host", "ftp://host", "https:///app", "http://host", "http://127.0.0.1@host",
          "https://host?x", "https://host:65536", "http://127.0.0.1.host", "http://[::2]",
          "http://localhost@host", "http://user:pw@localhost", "http://localhost:80:80",
          "http://localhost\t", "http://localhost\\@host", "HTTP://127.0.0.1%2ehost",
          "http://[::1]host"}) {
        try {
            CheckServiceUrl(url, false);
            ADD_FAILURE() << url;
        } catch (const Failure& failure) {
            EXPECT_EQ(ExitCode::Usage, failure.exitCode) << url;
        }
    }
}

} // namespace
} // namespace brevint::cli
