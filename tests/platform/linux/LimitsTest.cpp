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

TEST(Limits, AHostHas150Cookies) {
    int stored = 0;
    for (int i = 0; i < 200; ++i) {
        const auto name = L"n" + std::to_wstring(i);
        stored += InternetSetCookieW(L"http://many.test/", name.c_str(), L"v");
    }
    EXPECT_EQ(stored, 150);
    EXPECT_TRUE(InternetSetCookieW(L"http://many.test/", L"n7", L"w"));
    EXPECT_TRUE(InternetSetCookieW(L"http://other.test/", L"n", L"v"));
}

// The server never goes on, so only the closing can have ended these.
TEST(Limits, ClosingEndsWhatIsUnderWay) {
    for (const auto* target : {"/send", "/read"}) {
        for (const auto order : {CloseOrder::requestFirst, CloseOrder::sessionFirst}) {
            SCOPED_TRACE(target);
            ScriptedServer server;
            server.On("/send").Wait("never");
            server.On("/read").Head(200, {{"Content-Length", "9"}}).Send("four").Wait("never");
            AsyncExchange exchange(server.Url(target));
            exchange.Send();
            ASSERT_TRUE(server.AwaitArrivalAt("never"));
            exchange.Close(order);
            EXPECT_EQ(exchange.AwaitClosed().back(), INTERNET_STATUS_HANDLE_CLOSING);
            const auto completions = exchange.Completions();
            ASSERT_FALSE(completions.empty());
            EXPECT_TRUE(target == std::string("/read") ||
                        completions.back() == ERROR_INTERNET_OPERATION_CANCELLED);
        }
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
