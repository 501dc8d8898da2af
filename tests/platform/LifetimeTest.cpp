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
void StartAndDestroy(const ScriptedServer& server, unsigned seed) {
    std::mt19937 random(seed);
    for (int round = 0; round < 60; ++round) {
        const auto* target = random() % 2 == 0 ? "/length" : "/chunks";
        AsyncExchange exchange(server.Url(target), {}, random() % 3 == 0 ? 300000 : 50000);
        const auto last = random() % 6;
        exchange.onCompletion = [&exchange, last](std::size_t completions) {
            if (completions == last) {
                exchange.Close();
            }
        };
        if (round % 20 != 0) {
            exchange.Send();
            for (auto spin = last == 0 ? random() % 2000 : 0; spin > 0; --spin) {
                std::this_thread::yield();
            }
            if (last != 0) {
                exchange.AwaitEnd();
            }
        }
        exchange.Close();
        const auto statuses = exchange.AwaitClosed();
        EXPECT_EQ(std::ranges::count(statuses, INTERNET_STATUS_HANDLE_CLOSING), 1);
        EXPECT_EQ(statuses.back(), INTERNET_STATUS_HANDLE_CLOSING);
    }
}

TEST(Lifetime, ExchangesStartAndEndAnywhereSideBySide) {
    ScriptedServer server;
    server.On("/length").Head(200, {{"Content-Length", "250000"}}).SendPattern(250000);
    server.On("/chunks").ReplyChunked(200, {},
                                      std::vector<std::string>(10, ScriptedServer::Pattern(25000)));
    std::vector<std::jthread> threads;
    for (unsigned thread = 0; thread < 8; ++thread) {
        threads.emplace_back([&server, thread] { StartAndDestroy(server, thread); });
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
