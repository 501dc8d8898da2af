#include "tests/platform/Exchange.h"
#include "tests/support/Environment.h"
#include "tests/support/ScriptedServer.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cerrno>
#include <string>
#include <sys/socket.h>

// Which way a request goes, and once more where that one ends.

namespace {

std::atomic<int> sendsToReset = 0; // how many calls of send the connection has left, if not 0

} // namespace

// libcurl sends by this; the scripted server does not.
extern "C" __attribute__((visibility("default"))) ssize_t send(int socket, const void* data,
                                                               std::size_t size, int flags) {
    if (sendsToReset > 0 && --sendsToReset == 0) {
        errno = ECONNRESET;
        return -1;
    }
    return sendto(socket, data, size, flags, nullptr, 0);
}

namespace brevint::test {
namespace {

TEST(Connection, IsMadeAnewForARequestThatMeetsTheEndOfAKeptOne) {
    const auto body = ScriptedServer::Pattern(5'000'000);
    for (const bool kept : {true, false}) {
        ScriptedServer server;
        server.On("GET /").Reply(200);
        server.On("PUT /").Reply(200, {}, "stored");
        if (kept) {
            EXPECT_TRUE(Exchange(server.Url("/")).Send());
        }
        sendsToReset = 3; // in the midst of the body
        Exchange upload(server.Url("/"), {.verb = L"PUT", .body = body});
        EXPECT_EQ(upload.Send(), kept);
        EXPECT_EQ(sendsToReset, 0);
        const auto requests = server.Requests();
        EXPECT_EQ(requests.size(), kept ? 2u : 0u);
        EXPECT_TRUE(!kept || requests.back().body == body);
        EXPECT_TRUE(!kept || requests.back().HeaderCount("Expect") == 0);
    }
}

TEST(Connection, GoesThroughTheProxyUnlessItIsToThisMachine) {
    ScriptedServer proxy;
    proxy.On("*").Reply(200, {}, "proxy");
    SetVariable("http_proxy", Narrow(proxy.Url("")));
    ScriptedServer server;
    server.On("*").Reply(200, {}, "server");
    const auto port = L":" + std::to_wstring(server.Port()) + L"/";
    for (const std::wstring host : {L"127.0.0.1", L"127.1", L"LocalHost", L"0x7f.0.0.1"}) {
        Exchange exchange(L"http://" + host + port);
        EXPECT_TRUE(exchange.Send());
        EXPECT_EQ(exchange.ReadAll(), "server");
    }
    for (const std::wstring host : {L"[::1]", L"[0:0::1]", L"127.9.9.9"}) {
        Exchange exchange(L"http://" + host + port); // nobody listens there
        EXPECT_FALSE(exchange.Send());
    }
    EXPECT_EQ(proxy.ConnectionCount(), 0u);
    for (const std::wstring host : {L"service.test", L"128.0.0.1", L"[::2]", L"127.0.0.1.test"}) {
        Exchange exchange(L"http://" + host + port);
        EXPECT_TRUE(exchange.Send());
        EXPECT_EQ(exchange.ReadAll(), "proxy");
    }
    ClearVariable("http_proxy");
}

} // namespace
} // namespace brevint::test
