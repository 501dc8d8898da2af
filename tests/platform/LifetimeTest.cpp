#include "tests/platform/AsyncExchange.h"
#include "tests/support/ScriptedServer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <random>
#include <thread>
#include <vector>

namespace brevint::test {
namespace {

/// Starts exchanges and ends each of them somewhere on its way: before or after its send, or in one
/// of its completions. Each time the closing must be told once, and last.
void StartAndDestroy(const ScriptedServer& server, unsigned seed, int rounds, CloseOrder order) {
    std::mt19937 random(seed);
    for (int round = 0; round < rounds; ++round) {
        const auto* target = random() % 2 == 0 ? "/length" : "/chunks";
        AsyncExchange exchange(server.Url(target), {}, random() % 3 == 0 ? 300000 : 50000);
        const auto last = random() % 6;
        exchange.onCompletion = [&exchange, order, last](std::size_t completions) {
            if (completions == last) {
                exchange.Close(order);
            }
        };
        if (round % 20 != 0) {
            exchange.Send();
            if (last == 0) {
                for (auto spin = random() % 2000; spin > 0; --spin) {
                    std::this_thread::yield();
                }
            } else {
                exchange.AwaitEnd();
            }
        }
        exchange.Close(order);
        const auto statuses = exchange.AwaitClosed();
        EXPECT_EQ(std::count(statuses.begin(), statuses.end(), INTERNET_STATUS_HANDLE_CLOSING), 1);
        EXPECT_EQ(statuses.back(), INTERNET_STATUS_HANDLE_CLOSING);
    }
}

TEST(Lifetime, ExchangesStartAndEndAnywhereAloneAndSideBySide) {
    ScriptedServer server;
    server.On("/length").Head(200, {{"Content-Length", "250000"}}).SendPattern(250000);
    server.On("/chunks").ReplyChunked(200, {},
                                      std::vector<std::string>(10, ScriptedServer::Pattern(25000)));
    StartAndDestroy(server, 1, 200, CloseOrder::requestFirst);
    StartAndDestroy(server, 1, 200, CloseOrder::sessionFirst);
    std::vector<std::jthread> threads;
    for (unsigned thread = 0; thread < 8; ++thread) {
        threads.emplace_back(
            [&server, thread] { StartAndDestroy(server, thread, 50, CloseOrder::requestFirst); });
    }
}

// What is under way when the process ends does not hold it up, nor does it end badly.
TEST(Lifetime, ProcessMayEndFirst) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            ScriptedServer server;
            server.On("/").Head(200, {{"Content-Length", "9"}}).Send("four").Wait("never");
            AsyncExchange exchange(server.Url("/"));
            exchange.Send();
            server.AwaitArrivalAt("never");
            std::exit(0);
        },
        testing::ExitedWithCode(0), "");
}

} // namespace
} // namespace brevint::test
