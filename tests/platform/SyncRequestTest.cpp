#include "tests/platform/Exchange.h"
#include "tests/support/ScriptedServer.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

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

} // namespace
} // namespace brevint::test
