#include "tests/platform/Exchange.h"
#include "tests/support/ScriptedServer.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

namespace brevint::test {
namespace {

using Headers = ScriptedServer::Headers;

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
        {"interim reply", "100 Continue\r\n\r\nHTTP/1.1 200 OK\r\nContent-Length: 5\r\n\r\nhello",
         200, 5, "hello"},
        {"largest length", "200 OK\r\nContent-Length: 4294967295\r\n\r\n", 200, 4294967295, "",
         L"HEAD"},
        {"length past 32 bits", "200 OK\r\nContent-Length: 4294967301\r\n\r\n", 200, std::nullopt,
         "", L"HEAD"},
        // What is compressed stays so.
        {"encoded", "200 OK\r\nContent-Encoding: gzip\r\nContent-Length: 4\r\n\r\n\x1f\x8b!!", 200,
         4, "\x1f\x8b!!"},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.name);
        ScriptedServer server;
        server.On("/").Send("HTTP/1.1 " + test.reply);
        Exchange exchange(server.Url("/"), {.verb = test.verb});
        EXPECT_TRUE(exchange.Send());
        EXPECT_EQ(exchange.Status(), test.status);
        EXPECT_EQ(exchange.Length(), test.length);
        EXPECT_EQ(exchange.ReadAll(), test.body);
    }
}

TEST(SyncRequest, TellsNothingWithoutAReply) {
    ScriptedServer server;
    server.On("/fin").Close();
    server.On("/rst").Reset();
    for (const auto* target : {"/fin", "/rst"}) {
        Exchange exchange(server.Url(target));
        exchange.Send();
        EXPECT_EQ(exchange.Status(), 0u);
        EXPECT_EQ(exchange.ReadAll(), "");
    }
}

TEST(SyncRequest, QueriesTellTheRoomTheyNeed) {
    const std::string location = "http://host/p?a=1";
    ScriptedServer server;
    server.On("/").Reply(200, {{"Location", location}});
    server.On("/none").Reply(200);
    Exchange exchange(server.Url("/"));
    Exchange none(server.Url("/none"));
    ASSERT_TRUE(exchange.Send());
    ASSERT_TRUE(none.Send());

    // With the NUL when there is too little room, without it when there is enough.
    const auto needed = static_cast<DWORD>(location.size() + 1);
    for (const DWORD given : {DWORD{0}, needed - 1, needed, needed + 5}) {
        SCOPED_TRACE(given);
        char text[32] = "untouched";
        DWORD size = given;
        SetLastError(0);
        EXPECT_EQ(HttpQueryInfoA(exchange.Request(), HTTP_QUERY_LOCATION,
                                 given == 0 ? nullptr : text, &size, nullptr) != FALSE,
                  given >= needed);
        EXPECT_EQ(GetLastError() == ERROR_INSUFFICIENT_BUFFER, given < needed);
        EXPECT_EQ(size, given < needed ? needed : location.size());
        EXPECT_EQ(text, given < needed ? "untouched" : location);
    }

    DWORD size = 0;
    EXPECT_FALSE(HttpQueryInfoA(none.Request(), HTTP_QUERY_LOCATION, nullptr, &size, nullptr));
    EXPECT_EQ(GetLastError(), ERROR_HTTP_HEADER_NOT_FOUND);
    EXPECT_EQ(size, 0u);
}

TEST(SyncRequest, FillsEveryReadButTheLast) {
    for (const std::size_t total : {0, 1, 100000, 250000}) {
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

// That the body is short shows in its size; whether a read also fails depends on the moment.
TEST(SyncRequest, GivesOutWhatCameBeforeTheBodyBrokeOff) {
    ScriptedServer server;
    const Headers length{{"Content-Length", "1000"}};
    const Headers chunked{{"Transfer-Encoding", "chunked"}};
    const auto start = ScriptedServer::Pattern(300);
    server.On("/0").Head(200, length).Send(start).Wait("/0").Close();
    server.On("/1").Head(200, length).Send(start).Wait("/1").Reset();
    server.On("/2").Head(200, chunked).SendChunk(start).Wait("/2").Close();
    server.On("/3").Head(200, chunked).SendChunk(start).Wait("/3").Reset();
    for (const auto* target : {"/0", "/1", "/2", "/3"}) {
        SCOPED_TRACE(target);
        Exchange exchange(server.Url(target));
        ASSERT_TRUE(exchange.Send());
        server.Open(target);
        EXPECT_EQ(exchange.Read(1000).bytes, start);
        EXPECT_EQ(exchange.Read(1000).bytes, "");
    }
}

} // namespace
} // namespace brevint::test
