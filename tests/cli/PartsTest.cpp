// The parts of the client that need no service.

#include "cli/Failure.h"
#include "cli/SafeName.h"
#include "cli/ServiceUrl.h"

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

TEST(ServiceUrl, RefusesTheRest) {
    for (const char* url :
         {"", "host", "ftp://host", "https:///app", "http://host", "http://127.0.0.1@host",
          "https://host?x", "https://host:65536", "http://127.0.0.1.host", "http://[::2]",
          "http://localhost@host", "http://user:pw@localhost", "http://localhost:80:80",
          "http://localhost\t", "http://localhost\\@host", "http://[::1]host"}) {
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
