#include "brevint/WebRequest.h"
#include "tests/support/ScriptedServer.h"
#include "tests/transport/RecordingResponse.h"

#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <latch>
#include <memory>
#include <semaphore>

namespace brevint::test {
namespace {

/// How far an exchange has come when its request is destroyed.
enum class Phase { justSent, beforeHead, afterHead, inBody, inLastChunk, inFilling, complete };

/// Scripts a reply that stops at the gate in that phase.
void ScriptReply(ScriptedServer::Script& script, Phase phase, bool chunked,
                 const std::string& gate) {
    const auto body = ScriptedServer::Pattern(250'000);
    const auto stopIn = [&](Phase here) {
        if (phase == here) {
            script.Wait(gate);
        }
    };
    const auto send = [&](std::size_t from, std::size_t to) {
        const auto bytes = body.substr(from, to - from);
        chunked ? script.SendChunk(bytes) : script.Send(bytes);
    };
    stopIn(Phase::beforeHead);
    script.Head(200, {chunked ? std::pair("Transfer-Encoding", "chunked")
                              : std::pair("Content-Length", "250000")});
    stopIn(Phase::afterHead);
    send(0, 120'000);
    stopIn(Phase::inBody);
    send(120'000, 249'990);
    stopIn(Phase::inLastChunk);
    send(249'990, 250'000);
    if (chunked) {
        script.SendChunk({});
    }
}

TEST(Lifetime, RequestMayBeDestroyedAtAnyMoment) {
    constexpr int kRounds = 420; // thirty of each phase and each kind of reply
    ScriptedServer server;
    std::counting_semaphore<> filled(0); // those that are waited for
    for (int round = 0; round < kRounds; ++round) {
        const auto phase = static_cast<Phase>(round % 7);
        const bool chunked = round / 7 % 2 == 1;
        const auto name = std::to_string(round);
        ScriptReply(server.On("/" + name), phase, chunked, name);

        auto response = std::make_unique<RecordingResponse>();
        auto request =
            std::make_unique<WebRequest>(server.Url("/" + name).c_str(), WebRequestTypeGet);
        const auto destroyed = std::make_shared<std::atomic<bool>>(false);
        response->onFilled = [&, phase, destroyed] {
            EXPECT_FALSE(*destroyed) << "filled after the request's end";
            if (phase == Phase::inFilling) {
                request.reset();
            }
            if (phase >= Phase::inFilling) {
                filled.release();
            }
        };
        request->SendRequestAsync(response.get());
        if (phase >= Phase::inFilling) {
            ASSERT_TRUE(filled.try_acquire_for(std::chrono::minutes(1)));
            EXPECT_EQ(request == nullptr, phase == Phase::inFilling);
        } else if (phase != Phase::justSent) {
            ASSERT_TRUE(server.AwaitArrivalAt(name));
        }
        request.reset();
        *destroyed = true;
        response.reset();
        server.Open(name); // the platform goes on with what it was doing
    }
}

/// Handle numbers are used again as soon as they are free, so a request that closed a number which
/// is not its own any more would hurt a request of another thread.
TEST(Lifetime, RequestsOfManyThreadsDoNotHurtEachOther) {
    constexpr int kThreads = 8;
    constexpr int kRequestsPerThread = 200;
    ScriptedServer server;
    std::latch started(kThreads);
    std::vector<std::future<int>> wrong;
    for (int thread = 0; thread < kThreads; ++thread) {
        const auto expected = "reply for thread " + std::to_string(thread);
        const auto path = "/" + std::to_string(thread);
        server.On(path).Reply(200, {}, expected);
        wrong.push_back(std::async(std::launch::async, [&, expected, url = server.Url(path)] {
            int wrongReplies = 0;
            started.arrive_and_wait();
            for (int i = 0; i < kRequestsPerThread; ++i) {
                WebRequest request(url.c_str(), WebRequestTypeGet);
                request.SendRequest();
                std::vector<char> reply;
                request.GetRequestedData(reply);
                wrongReplies += std::string(reply.begin(), reply.end()) != expected;
                // Handles that come and go without traffic make numbers change hands quickly.
                for (int opening = 0; opening < 10; ++opening) {
                    WebRequest(url.c_str(), WebRequestTypeGet).Connect(0);
                }
            }
            return wrongReplies;
        }));
    }
    for (auto& count : wrong) {
        EXPECT_EQ(count.get(), 0);
    }
    EXPECT_EQ(server.Requests().size(), static_cast<std::size_t>(kThreads * kRequestsPerThread));
}

} // namespace
} // namespace brevint::test
