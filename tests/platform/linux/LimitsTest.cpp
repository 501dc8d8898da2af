#include "platform/linux/cookies/CookieJar.h"
#include "tests/platform/AsyncExchange.h"
#include "tests/support/ScriptedServer.h"

#include <gtest/gtest.h>

#include <future>
#include <string>

// What the Linux layer ends or limits, as Windows is documented to, and Wine does not.

namespace brevint::test {
namespace {

TEST(Limits, RedirectsAreFollowedTenTimes) {
    for (const int length : {10, 11}) {
        SCOPED_TRACE(length);
        ScriptedServer server;
        for (int i = 0; i < length; ++i) {
            server.On("/" + std::to_string(i))
                .Reply(302, {{"Location", "/" + std::to_string(i + 1)}});
        }
        server.On("/" + std::to_string(length)).Reply(200, {}, "end");
        Exchange exchange(server.Url("/0"));
        EXPECT_EQ(exchange.Send(), length == 10);
        EXPECT_EQ(exchange.SendError(), length == 10 ? 0 : ERROR_HTTP_REDIRECT_FAILED);
        EXPECT_EQ(exchange.ReadAll(), length == 10 ? "end" : "");
        EXPECT_EQ(server.Requests().size(), 11u);
    }
}

TEST(Limits, AHeadHas200Kilobytes) {
    const auto lines = [](int kilobytes) {
        std::string all;
        for (int i = 0; i < kilobytes; ++i) {
            all += "X: " + std::string(1024 - 5, 'x') + "\r\n";
        }
        return all;
    };
    std::string interim;
    for (int i = 0; i < 10'000; ++i) {
        interim += "HTTP/1.1 100 Go on\r\n\r\n";
    }
    const std::string ok = "HTTP/1.1 200 OK\r\n";
    const std::string end = "Content-Length: 4\r\n\r\nbody";
    const std::string chunks = "Transfer-Encoding: chunked\r\n\r\n4\r\nbody\r\n0\r\n";
    const struct {
        const char* name;
        std::string reply;
        bool headFits = false;
        bool allFits = false;
    } cases[] = {
        {"head that fits", ok + lines(199) + end, true, true},
        {"head", ok + lines(200) + end},
        {"header of 350 kB", ok + "X: " + std::string(350'000, 'x') + "\r\n" + end},
        {"interim replies", interim + ok + end},
        {"trailers that fit", ok + chunks + lines(199) + "\r\n", true, true},
        {"trailers", ok + chunks + lines(200) + "\r\n", true},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.name);
        ScriptedServer server;
        server.On("/").Send(test.reply);
        Exchange exchange(server.Url("/"));
        EXPECT_EQ(exchange.Send(), test.headFits);
        EXPECT_EQ(exchange.SendError(), test.headFits ? 0 : ERROR_HTTP_INVALID_SERVER_RESPONSE);
        const auto body = exchange.Read(100);
        EXPECT_EQ(body.succeeded, test.allFits || !test.headFits);
        EXPECT_TRUE(body.succeeded || GetLastError() == ERROR_HTTP_INVALID_SERVER_RESPONSE);
        EXPECT_EQ(body.bytes, test.headFits ? "body" : "");
    }
}

TEST(Limits, CookiesThatMeetHave256Kilobytes) {
    ScriptedServer server;
    server.On("/").Reply(200);
    const auto url = server.Url("/");
    for (const std::size_t size : {8'190U, 100'000U, 150'000U, 10'000U, 1'000U}) {
        const bool stored = InternetSetCookieW(url.c_str(), (L"n" + std::to_wstring(size)).c_str(),
                                               std::wstring(size, L'v').c_str()) != FALSE;
        EXPECT_EQ(stored, size != 10'000);
        EXPECT_TRUE(stored || GetLastError() == ERROR_NOT_ENOUGH_QUOTA);
        ASSERT_TRUE(Exchange(url).Send());
        DWORD listed = 0;
        InternetGetCookieW(url.c_str(), nullptr, nullptr, &listed);
        EXPECT_EQ(server.Requests().back().Header("Cookie").size() + 1, listed / sizeof(wchar_t));
        EXPECT_GE(listed, stored ? size : 0);
    }
    // A host of its own, and one that is below another.
    platform::CookieJar jar;
    const auto set = [&jar](const wchar_t* address, int i) {
        return jar.Set(address, "n" + std::to_string(i), "v; domain=many.test");
    };
    for (int i = 0; i < 1'000; ++i) {
        EXPECT_EQ(set(L"http://many.test/", i), 0u);
    }
    EXPECT_EQ(set(L"http://many.test/", 7), 0u);
    EXPECT_EQ(set(L"http://below.many.test/", 1'000), ERROR_NOT_ENOUGH_QUOTA);
    EXPECT_EQ(jar.Set(L"http://below.many.test/", "n", "v"), ERROR_NOT_ENOUGH_QUOTA);
    EXPECT_EQ(jar.Set(L"http://other.test/", "n", "v"), 0u);
}

// The server never goes on, so only the closing can have ended these.
TEST(Limits, ClosingEndsWhatIsUnderWay) {
    for (const std::string target : {"/send", "/read"}) {
        SCOPED_TRACE(target);
        ScriptedServer server;
        server.On("/send").Wait("never");
        server.On("/read").Head(200, {{"Content-Length", "9"}}).Send("four").Wait("never");
        AsyncExchange exchange(server.Url(target));
        exchange.Send();
        ASSERT_TRUE(server.AwaitArrivalAt("never"));
        exchange.Close();
        EXPECT_EQ(exchange.AwaitClosed().back(), INTERNET_STATUS_HANDLE_CLOSING);
        const auto completions = exchange.Completions();
        ASSERT_FALSE(completions.empty());
        EXPECT_TRUE(target == "/read" || completions.back() == ERROR_INTERNET_OPERATION_CANCELLED);
    }
    ScriptedServer server;
    server.On("/").Wait("never");
    RequestSetup setup;
    auto handles = OpenRequest(server.Url("/"), setup);
    auto send = std::async(std::launch::async, [request = handles.request.get(), &setup] {
        return SendRequest(request, setup) ? 0 : GetLastError();
    });
    EXPECT_TRUE(server.AwaitArrivalAt("never"));
    handles.session.reset();
    EXPECT_EQ(send.get(), ERROR_INTERNET_OPERATION_CANCELLED);
}

} // namespace
} // namespace brevint::test
