#include "tests/platform/AsyncExchange.h"
#include "tests/support/ScriptedServer.h"

#include <gtest/gtest.h>

#include <future>
#include <string>

// What the Linux layer does as Windows is documented to do, and Wine does not.

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

// The session's timeout holds for requests opened under it afterwards.
TEST(Limits, SilentServerIsGivenUpAfterTheReceiveTimeout) {
    ScriptedServer server;
    server.On("/silent").Wait("never");
    server.On("/stalled").Head(200, {{"Content-Length", "1000"}}).SendPattern(300).Wait("never");
    const Handle session(InternetOpenW(L"Tester", 0, nullptr, nullptr, 0));
    DWORD milliseconds = 200;
    EXPECT_TRUE(InternetSetOptionA(session.get(), INTERNET_OPTION_RECEIVE_TIMEOUT, &milliseconds,
                                   sizeof milliseconds));
    const Handle connection(InternetConnectW(session.get(), L"127.0.0.1", server.Port(), nullptr,
                                             nullptr, INTERNET_SERVICE_HTTP, 0, 0));
    const auto open = [&](const wchar_t* target) {
        return Handle(
            HttpOpenRequestW(connection.get(), L"GET", target, nullptr, nullptr, nullptr, 0, 0));
    };

    const auto silent = open(L"/silent");
    EXPECT_FALSE(HttpSendRequestW(silent.get(), nullptr, 0, nullptr, 0));
    EXPECT_EQ(GetLastError(), ERROR_INTERNET_TIMEOUT);

    const auto stalled = open(L"/stalled");
    EXPECT_TRUE(HttpSendRequestW(stalled.get(), nullptr, 0, nullptr, 0));
    char buffer[1000];
    DWORD count = 0;
    EXPECT_FALSE(InternetReadFile(stalled.get(), buffer, sizeof buffer, &count));
    EXPECT_EQ(GetLastError(), ERROR_INTERNET_TIMEOUT);
    EXPECT_EQ(count, 300u);
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
