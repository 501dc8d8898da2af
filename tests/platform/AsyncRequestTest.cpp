#include "tests/platform/AsyncExchange.h"
#include "tests/platform/Target.h"
#include "tests/support/RefusedPort.h"
#include "tests/support/ScriptedServer.h"

#include <gtest/gtest.h>

#include <thread>

namespace brevint::test {
namespace {

TEST(AsyncRequest, SendIsPendingAndCompletesOnAnotherThread) {
    ScriptedServer server;
    server.On("/").Wait("the send has returned").Reply(201, {}, "hello");
    AsyncExchange exchange(server.Url("/"));
    std::thread::id thread;
    exchange.onCompletion = [&](std::size_t) {
        thread = std::this_thread::get_id();
    };
    EXPECT_FALSE(exchange.Send());
    EXPECT_EQ(GetLastError(), ERROR_IO_PENDING);
    EXPECT_TRUE(exchange.Completions().empty());
    server.Open("the send has returned");
    const auto& result = exchange.AwaitEnd();
    EXPECT_EQ(result.status, 201u);
    EXPECT_EQ(result.body, "hello");
    EXPECT_EQ(exchange.Completions().at(0), 0u);
    EXPECT_NE(thread, std::this_thread::get_id());
}

TEST(AsyncRequest, ReadsOfTheCallbackBringTheWholeReply) {
    const struct {
        std::size_t total;
        bool chunked;
        DWORD readSize; ///< 0: the announced length
    } cases[] = {
        {0, false, 100000},      {1'000'000, false, 0}, {100000, false, 100000},
        {250000, false, 100000}, {0, true, 100000},     {100000, true, 100000},
        {250000, true, 100000},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.total);
        SCOPED_TRACE(test.chunked);
        const auto body = ScriptedServer::Pattern(test.total);
        ScriptedServer server;
        test.chunked ? server.On("/").ReplyChunked(200, {}, Chunks(body, 30000))
                     : server.On("/").Reply(200, {}, body);
        AsyncExchange exchange(server.Url("/"), {}, test.readSize);
        exchange.Send();
        const auto& result = exchange.AwaitEnd();
        EXPECT_TRUE(result.body == body);
        // Full ones, a rest, and the empty one that tells the end.
        EXPECT_EQ(result.reads, test.readSize == 0 ? 1 : (test.total + 99999) / 100000 + 1);
        // One completion for the send, and one for each read that was pending.
        EXPECT_EQ(exchange.Completions().size(), 1 + result.reads - result.readsAtOnce);
        EXPECT_TRUE(target::kReadsMayFinishAtOnce || result.readsAtOnce == 0);
    }
}

// The first completion holds the platform's thread until the last byte is on its way.
TEST(AsyncRequest, ReadOfWhatIsThereMayFinishAtOnce) {
    ScriptedServer server;
    server.On("/").Reply(200, {}, "all of it").Wait("nothing");
    AsyncExchange exchange(server.Url("/"), {}, 100);
    exchange.onCompletion = [&](std::size_t) {
        server.AwaitArrivalAt("nothing");
    };
    exchange.Send();
    EXPECT_EQ(exchange.AwaitEnd().body, "all of it");
    EXPECT_EQ(exchange.AwaitEnd().readsAtOnce > 0, target::kReadsMayFinishAtOnce);
}

TEST(AsyncRequest, RefusedConnectionIsToldByTheCompletion) {
    const RefusedPort port;
    AsyncExchange refused(port.Url());
    EXPECT_FALSE(refused.Send());
    EXPECT_EQ(GetLastError(), ERROR_IO_PENDING);
    EXPECT_EQ(refused.AwaitEnd().status, 0u);
    EXPECT_EQ(refused.Completions(), std::vector<DWORD>{ERROR_INTERNET_CANNOT_CONNECT});
}

} // namespace
} // namespace brevint::test
