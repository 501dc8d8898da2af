#include "brevint/brevint.h"
#include "tests/library/Helpers.h"
#include "tests/support/AwaitComplete.h"
#include "tests/support/ScriptedServer.h"
#include "tests/support/TempFolder.h"
#include "transport/RequestContext.h"

#include <gtest/gtest.h>

#include <memory>
#include <thread>

namespace brevint::test {
namespace {

/// How far an exchange has come when it is given up.
enum class Phase { JustSent, BeforeHead, AfterHead, InBody, InLastChunk, InFilling, Complete };

/// Scripts a reply that stops at the gate in that phase.
void ScriptReply(ScriptedServer::Script& script, Phase phase, bool chunked,
                 const std::string& gate) {
    static const auto body = ScriptedServer::Pattern(250'000);
    const std::pair<Phase, std::size_t> stops[] = {
        {Phase::AfterHead, 0}, {Phase::InBody, 120'000}, {Phase::InLastChunk, 249'990}};
    if (phase == Phase::BeforeHead) {
        script.Wait(gate);
    }
    script.Head(200, {chunked ? std::pair("Transfer-Encoding", "chunked")
                              : std::pair("Content-Length", "250000")});
    std::size_t sent = 0;
    const auto sendTo = [&](std::size_t end) {
        if (end > sent) {
            const auto bytes = body.substr(sent, end - sent);
            chunked ? script.SendChunk(bytes) : script.Send(bytes);
            sent = end;
        }
    };
    for (const auto& [here, size] : stops) {
        sendTo(size);
        if (phase == here) {
            script.Wait(gate);
        }
    }
    sendTo(body.size());
    if (chunked) {
        script.SendChunk({});
    }
}

/// The response, the proxy with its request, and the factory.
TEST(Lifetime, DownloadMayBeGivenUpInAnyOrder) {
    constexpr int kRounds = 672; // 16 of each phase, each kind of reply and each order
    const TempFolder folder;
    ScriptedServer server;
    for (int round = 0; round < kRounds; ++round) {
        const auto phase = static_cast<Phase>(round % 7);
        const auto name = std::to_string(round);
        const std::wstring id(name.begin(), name.end());
        ScriptReply(server.On("/Repository/Files/" + name), phase, round / 7 % 2 == 1, name);
        auto factory = std::make_unique<WebRequestFactory>();
        auto proxy = std::make_unique<CRepositoryProxy>(factory.get());
        std::unique_ptr<IDownloadFileResponse> response(
            proxy->DownloadFile(server.Url(""), id, folder.Path(id)));
        while (phase == Phase::InFilling && !response->IsComplete() &&
               !std::filesystem::exists(FilePath(folder.Path(id)))) {
            std::this_thread::yield();
        }
        ASSERT_TRUE(
            phase == Phase::JustSent || phase == Phase::InFilling ||
            (phase == Phase::Complete ? AwaitComplete(*response) : server.AwaitArrivalAt(name)));
        const int order = round / 14 % 3;
        if (order == 0) {
            response.reset();
            proxy.reset();
        } else if (order == 1) {
            proxy.reset();
            const bool isComplete = response->IsComplete();
            server.Open(name); // the platform goes on with what it was doing
            EXPECT_EQ(isComplete, response->GetErrorCode() != 1100);
            const auto& bytes = response->GetServerResponse();
            EXPECT_EQ(response->GetSucceeded(),
                      ReadFile(folder.Path(id)) == std::string(bytes.begin(), bytes.end()));
        } else {
            const std::jthread other([&] { response.reset(); });
            proxy.reset();
        }
        factory.reset();
        server.Open(name);
    }
}

/// A download that calls back when its destination has been opened.
class WatchedDownload : public CDownloadFileResponse {
public:
    std::function<void(RequestContext&)> onOpened;

    void Attach(std::shared_ptr<RequestContext> exchange) override {
        m_exchange = exchange;
        CDownloadFileResponse::Attach(std::move(exchange));
    }
    const std::vector<char>& GetServerResponse() const override {
        if (ReadFile(GetFileDestination()).empty()) {
            onOpened(*m_exchange);
        }
        return CDownloadFileResponse::GetServerResponse();
    }

private:
    std::shared_ptr<RequestContext> m_exchange;
};

TEST(Lifetime, WriteOfAFileIsNotWaitedForToItsEnd) {
    const TempFolder folder;
    ScriptedServer server;
    server.On("*").Reply(200, {}, ScriptedServer::Pattern(3'000'000));
    auto request = std::make_unique<WebRequest>(server.Url("/").c_str(), WebRequestTypeGet);
    WatchedDownload response;
    response.SetFileDestination(WriteFile(folder.Path(L"file"), "before"));
    std::jthread other;
    response.onOpened = [&](RequestContext& exchange) {
        other = std::jthread([&] { request.reset(); });
        while (!exchange.IsWaitedFor()) {
            std::this_thread::yield();
        }
    };
    request->SendRequestAsync(&response);
    ASSERT_TRUE(AwaitComplete(response));
    EXPECT_EQ(response.GetErrorCode(), 1302);
    EXPECT_TRUE(ReadFile(folder.Path(L"file")).empty());
}

} // namespace
} // namespace brevint::test
