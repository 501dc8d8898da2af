#include "tests/platform/Exchange.h"
#include "tests/support/ScriptedServer.h"

#include <gtest/gtest.h>

namespace brevint::test {
namespace {

TEST(Reuse, ExchangesInARowShareOneConnection) {
    const struct {
        const char* body;
        DWORD read; ///< how many bytes the client takes
    } cases[] = {{"body", 100}, {"body", 4}, {"body", 2}, {"body", 0}, {"", 0}};
    for (const auto& test : cases) {
        SCOPED_TRACE(test.body);
        SCOPED_TRACE(test.read);
        ScriptedServer server;
        server.On("GET /").Reply(200, {}, test.body);
        server.On("POST /").ReplyChunked(200, {}, {"body"});
        for (int i = 0; i < 20; ++i) {
            const bool post = i % 2 == 1 && test.read == 100;
            Exchange exchange(server.Url("/"), {.verb = post ? L"POST" : L"GET"});
            EXPECT_TRUE(exchange.Send());
            EXPECT_EQ(test.read == 100 ? exchange.ReadAll() : exchange.Read(test.read).bytes,
                      std::string(test.body).substr(0, test.read));
        }
        EXPECT_EQ(server.Requests().size(), 20u);
        EXPECT_EQ(server.ConnectionCount(), 1u);
    }
}

TEST(Reuse, ConnectionThatTheServerEndedIsReplaced) {
    ScriptedServer server;
    server.On("/").Reply(200, {}, "body").Close();
    for (int i = 0; i < 5; ++i) {
        Exchange exchange(server.Url("/"), {.verb = i % 2 == 0 ? L"GET" : L"POST"});
        EXPECT_TRUE(exchange.Send());
        EXPECT_EQ(exchange.ReadAll(), "body");
    }
    EXPECT_EQ(server.ConnectionCount(), 5u);
}

// libcurl, with an easy handle that is used again, went on writing into a header that it had freed.
TEST(Reuse, HeaderThatContinuesNoneTouchesNoneOfTheReplyBefore) {
    ScriptedServer server;
    server.On("/").Reply(200, {{"X-Mine", "y"}}, "body");
    server.On("/").Send("HTTP/1.1 200 OK\r\n X: y\r\nContent-Length: 4\r\n\r\nbody");
    server.On("/").Reply(200, {}, "body");
    for (const bool healthy : {true, false, true}) {
        Exchange exchange(server.Url("/"));
        EXPECT_TRUE(exchange.Send() || !healthy);
        EXPECT_TRUE(exchange.ReadAll() == "body" || !healthy);
    }
}

} // namespace
} // namespace brevint::test
