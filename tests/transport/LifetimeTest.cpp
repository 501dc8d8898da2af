#include "brevint/brevint.h"
#include "requests/DownloadFileRequestInfo.h"
#include "tests/support/ScriptedServer.h"
#include "tests/transport/RecordingResponse.h"

#include <gtest/gtest.h>

#include <atomic>
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

TEST(Lifetime, RequestProxyAndFactoryMayBeDestroyedAtAnyMoment) {
    constexpr int kRounds = 1008; // 36 of each phase, each kind of reply and each kind of owner
    ScriptedServer server;
    std::counting_semaphore<> filled(0); // those that are waited for
    for (int round = 0; round < kRounds; ++round) {
        const auto phase = static_cast<Phase>(round % 7);
        const bool chunked = round / 7 % 2 == 1;
        const auto name = std::to_string(round);
        ScriptReply(server.On("/Repository/Files/" + name), phase, chunked, name);

        auto response = std::make_unique<RecordingResponse>();
        // A request, or a repository proxy, whose factory goes at the same moment.
        auto factory = std::make_unique<CProxyFactory>();
        std::shared_ptr<void> owner;
        const auto destroyed = std::make_shared<std::atomic<bool>>(false);
        response->onFilled = [&, phase, destroyed] {
            EXPECT_FALSE(*destroyed) << "filled after the request's end";
            if (phase == Phase::inFilling) {
                factory.reset();
                owner.reset();
            }
            if (phase >= Phase::inFilling) {
                filled.release();
            }
        };
        CDownloadFileRequestInfo info(server.Url(""), std::wstring(name.begin(), name.end()));
        if (round / 14 % 2 == 0) {
            const auto request = new WebRequest;
            owner.reset(request);
            request->SendRequestAsync(&info, response.get());
        } else {
            void* object = nullptr;
            ASSERT_EQ(factory->Create(IID_IRepositoryProxy, &object), 1);
            const auto proxy =
                dynamic_cast<CRepositoryProxy*>(static_cast<IRepositoryProxy*>(object));
            owner.reset(proxy);
            proxy->MakeRequestAsync(&info, response.get());
        }
        if (phase >= Phase::inFilling) {
            ASSERT_TRUE(filled.try_acquire_for(std::chrono::minutes(1)));
            EXPECT_EQ(owner == nullptr, phase == Phase::inFilling);
        } else if (phase != Phase::justSent) {
            ASSERT_TRUE(server.AwaitArrivalAt(name));
        }
        factory.reset();
        owner.reset();
        *destroyed = true;
        response.reset();
        server.Open(name); // the platform goes on with what it was doing
    }
}

} // namespace
} // namespace brevint::test
