#include "tests/platform/Exchange.h"
#include "tests/support/Environment.h"
#include "tests/support/ScriptedServer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <string>
#include <sys/socket.h>
#include <thread>

// Which way a request goes, and once more where that one ends.

namespace {

std::atomic<int> sendsToReset = 0; // how many calls of send the connection has left, if not 0

} // namespace

// libcurl sends by this; the scripted server does not.
extern "C" __attribute__((visibility("default"))) ssize_t send(int fd, const void* buf,
                                                               std::size_t n, int flags) {
    const int left = sendsToReset > 0 ? sendsToReset-- : 0;
    if (left == 1) {
        errno = ECONNRESET;
        return -1;
    }
    return sendto(fd, buf, n, flags, nullptr, 0);
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
        EXPECT_EQ(std::ranges::count(requests, body, &ScriptedServer::Request::body), kept);
        EXPECT_TRUE(std::ranges::all_of(
            requests, [](const auto& request) { return request.HeaderCount("Expect") == 0; }));
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

TEST(Connection, ClosingEndsCallsOfAnotherThread) {
    ScriptedServer server;
    server.On("GET /").Head(200, {{"Content-Length", "1000"}}).SendPattern(300).Wait("read");
    Exchange reading(server.Url("/"));
    ASSERT_TRUE(reading.Send());
    std::thread reader([&] { EXPECT_FALSE(reading.Read(1000).succeeded); });
    EXPECT_TRUE(server.AwaitArrivalAt("read"));
    InternetCloseHandle(reading.Request());
    reader.join();

    ScriptedServer deaf;
    deaf.OnConnect().Wait("write");
    Exchange writing(deaf.Url("/"), {.verb = L"POST"});
    INTERNET_BUFFERSW buffers{};
    buffers.dwStructSize = sizeof buffers;
    buffers.dwBufferTotal = 0xFFFFFFFF; // no socket holds as much
    ASSERT_TRUE(HttpSendRequestExW(writing.Request(), &buffers, nullptr, 0, 0));
    std::thread writer([&] {
        const std::string part(256 * 1024, 'x');
        DWORD written = 0;
        while (InternetWriteFile(writing.Request(), part.data(), static_cast<DWORD>(part.size()),
                                 &written)) {}
    });
    EXPECT_TRUE(deaf.AwaitArrivalAt("write"));
    InternetCloseHandle(writing.Request());
    writer.join();
}

} // namespace
} // namespace brevint::test
