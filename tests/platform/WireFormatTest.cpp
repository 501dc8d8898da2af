#include "tests/platform/Exchange.h"
#include "tests/platform/Target.h"
#include "tests/support/ScriptedServer.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace brevint::test {
namespace {

using Headers = ScriptedServer::Headers;

/// Sends a request and gives back what arrived, its headers without the jar's and in an order that
/// does not depend on the target.
ScriptedServer::Request Sent(ScriptedServer& server, const std::string& target,
                             RequestSetup setup = {}) {
    Exchange exchange(server.Url(target), std::move(setup));
    EXPECT_TRUE(exchange.Send());
    auto sent = server.Requests().back();
    std::erase_if(sent.headers, [](const auto& header) { return header.first == "Cookie"; });
    std::ranges::sort(sent.headers);
    return sent;
}

TEST(WireFormat, VerbBodyAndHeaderBlockMakeTheHeaders) {
    const struct {
        const char* name;
        RequestSetup setup;
        Headers headers;
    } cases[] = {
        {"GET", {}, {}},
        {"GET, body", {.body = "body"}, {{"Content-Length", "4"}}},
        {"PUT", {.verb = L"PUT"}, {{"Content-Length", "0"}}},
        {"POST", {.verb = L"POST"}, {{"Content-Length", "0"}}},
        {"POST, body", {.verb = L"POST", .body = "body"}, {{"Content-Length", "4"}}},
        {"DELETE", {.verb = L"DELETE"}, {{"Content-Length", "0"}}},
        {"types", {.accept = {L"text/xml", L"*/*"}}, {{"Accept", "text/xml, */*"}}},
        {"not ended", {.headers = L"X-A: 1"}, {{"X-A", "1"}}},
        {"two", {.headers = L"X-A: 1\r\nX-B: 2\r\n"}, {{"X-A", "1"}, {"X-B", "2"}}},
        {"ended twice", {.headers = L"X-A: 1\r\n\r\n"}, {{"X-A", "1"}}},
        {"gap", {.headers = L"X-A: 1\r\n\r\nX-B: 2\r\n"}, {{"X-A", "1"}, {"X-B", "2"}}},
        {"short line ends", {.headers = L"X-A: 1\nX-B: 2\n"}, {{"X-A", "1"}, {"X-B", "2"}}},
        {"colons", {.headers = L"X-A: http://h:1/\r\n"}, {{"X-A", "http://h:1/"}}},
        {"tab", {.headers = L"X-A: a\tb\r\n"}, {{"X-A", "a\tb"}}},
        {"no value", {.headers = L"X-A:\r\nX-B: 2\r\n"}, {{"X-A", ""}, {"X-B", "2"}}},
        {"blanks around", {.headers = L"X-A:   1  \r\n"}, {{"X-A", "1"}}},
        {"again", {.headers = L"X-A: 1\r\nX-B: 2\r\nx-a: 3\r\n"}, {{"X-B", "2"}, {"x-a", "3"}}},
        {"no colon at first", {.headers = L"plain\r\nX-B: 2\r\n"}, {}},
        {"no colon at last", {.headers = L"X-A: 1\r\nplain\r\n"}, {{"X-A", "1"}}},
        {"standard one", {.headers = L"Accept: text/plain\r\n"}, {{"Accept", "text/plain"}}},
    };
    ScriptedServer server;
    server.On("*").Reply(200);
    for (const auto& test : cases) {
        SCOPED_TRACE(test.name);
        const auto sent = Sent(server, "/x", test.setup);
        const auto line =
            std::string(test.setup.verb.begin(), test.setup.verb.end()) + " /x HTTP/1.1\r\n";
        EXPECT_EQ(sent.head.substr(0, line.size()), line);
        EXPECT_EQ(sent.body, test.setup.body);
        auto headers = test.headers;
        headers.emplace_back("Host", "127.0.0.1:" + std::to_string(server.Port()));
        headers.emplace_back("User-Agent", "Tester");
        std::ranges::sort(headers);
        EXPECT_EQ(sent.headers, headers);
    }
}

TEST(WireFormat, ObjectNameBecomesTheTarget) {
    ScriptedServer server;
    server.On("*").Reply(200);
    for (const auto& [afterHost, target] :
         {std::pair("", "/"), std::pair("?q=1", "/?q=1"), std::pair("/a?q=1&r=a/b", "/a?q=1&r=a/b"),
          std::pair("/a%20b%C3%A9", "/a%20b%C3%A9"), std::pair("/a b", "/a%20b"),
          std::pair("/a/../b", "/b"), std::pair("/a\\b", "/a/b"),
          std::pair("/a#b", target::kFragmentIsSent ? "/a#b" : "/a")}) {
        EXPECT_EQ(Sent(server, afterHost).target, target);
    }
}

} // namespace
} // namespace brevint::test
