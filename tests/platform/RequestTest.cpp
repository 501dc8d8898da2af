#include "tests/platform/AsyncExchange.h"
#include "tests/platform/Target.h"
#include "tests/support/RefusedPort.h"
#include "tests/support/ScriptedServer.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <thread>

namespace brevint::test {
namespace {

TEST(SyncRequest, TellsStatusLengthAndBody) {
    struct Case {
        const char* name;
        std::string reply;
        DWORD status;
        std::optional<DWORD> length;
        std::string body;
        const wchar_t* verb = L"GET";
    };
    const Case cases[] = {
        {"length", "200 OK\r\nContent-Length: 5\r\n\r\nhello", 200, 5, "hello"},
        {"chunks", "200 OK\r\nTransfer-Encoding: chunked\r\n\r\n5\r\nhello\r\n0\r\n\r\n", 200,
         std::nullopt, "hello"},
        {"no content", "204 No Content\r\n\r\n", 204, std::nullopt, ""},
        {"unauthorized",
         "401 No\r\nWWW-Authenticate: Basic realm=\"r\"\r\nContent-Length: 2\r\n\r\nno", 401, 2,
         "no"},
        {"largest length", "200 OK\r\nContent-Length: 4294967295\r\n\r\n", 200, 4294967295, "",
         L"HEAD"},
        {"length past 32 bits", "200 OK\r\nContent-Length: 4294967301\r\n\r\n", 200, std::nullopt,
         "", L"HEAD"},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.name);
        ScriptedServer server;
        server.On("/").Send("HTTP/1.1 " + test.reply);
        Exchange exchange(server.Url("/"), {.verb = test.verb});
        EXPECT_TRUE(exchange.Send());
        EXPECT_EQ(exchange.Status(), test.status);
        EXPECT_EQ(QueryNumber(exchange.Request(), HTTP_QUERY_CONTENT_LENGTH), test.length);
        EXPECT_EQ(exchange.ReadAll(), test.body);
    }
}

TEST(SyncRequest, FillsEveryReadButTheLast) {
    for (const std::size_t total : {0U, 1U, 100000U, 250000U}) {
        SCOPED_TRACE(total);
        const auto body = ScriptedServer::Pattern(total);
        ScriptedServer server;
        server.On("/length").Reply(200, {}, body);
        server.On("/chunks").ReplyChunked(200, {}, Chunks(body, 7001));
        server.On("/close").Head(200).Send(body).Close();
        for (const auto* target : {"/length", "/chunks", "/close"}) {
            SCOPED_TRACE(target);
            Exchange exchange(server.Url(target));
            ASSERT_TRUE(exchange.Send());
            for (std::size_t at = 0; at < total; at += 100000) {
                EXPECT_TRUE(exchange.Read(100000).bytes == body.substr(at, 100000));
            }
            for (int i = 0; i < 3; ++i) {
                const auto past = exchange.Read(100000);
                EXPECT_TRUE(past.succeeded);
                EXPECT_EQ(past.bytes, "");
            }
        }
    }
}

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
