#include "brevint/IDetachable.h"
#include "brevint/WebRequest.h"
#include "tests/transport/RecordingResponse.h"
#include "tests/transport/fake/FakeInternet.h"
#include "transport/RequestContext.h"

#include <gtest/gtest.h>

#include <memory>

namespace brevint::test {
namespace {

using How = FakeInternet::How;
using Step = FakeInternet::Step;

constexpr const wchar_t* kUrl = L"http://host/";
const std::string kChunk(100'000, 'c');

Step Pends(std::string bytes = {}) {
    return {How::Pends, std::move(bytes)};
}

/// An asynchronous exchange, whose send and whose read pend unless the test scripts other ones.
struct Exchange : FakeInternet {
    Exchange() {
        contentLength = 5;
        send = Pends();
        reads = {Pends("reply")};
    }

    void Send() const { request->SendRequestAsync(response.get()); }

    /// Ends, one after the other, whatever is pending; what else is told meanwhile changes nothing.
    void Run() {
        while (pending) {
            Notify(0, INTERNET_STATUS_REQUEST_COMPLETE);
            Notify(0, INTERNET_STATUS_HANDLE_CLOSING);
            for (const DWORD other : {0u, 10u, 11u, 30u, 31u, 50u, 60u, 110u, 120u, 0xFFFFFFFFu}) {
                Notify(context, other);
            }
            Complete();
        }
    }

    std::unique_ptr<RecordingResponse> response = std::make_unique<RecordingResponse>();
    std::unique_ptr<WebRequest> request = std::make_unique<WebRequest>(kUrl, WebRequestTypeGet);
};

TEST(Calls, EveryWayOfAnAsynchronousExchange) {
    const Step now{How::AtOnce, "reply"}, inCall{How::EndsInTheCall, "reply"};
    const Step twice{How::ToldTwice, "reply"}, fullTwice{How::ToldTwice, kChunk};
    const Step fails{How::Fails}, failsLater{How::Pends, "rest", false};
    const Step chunk = Pends(kChunk), chunkInCall{How::EndsInTheCall, kChunk};
    const auto all = kChunk + "reply";
    const struct {
        const char* name;
        DWORD length;
        std::deque<Step> reads;
        std::string bytes;
        Step send = Pends();
    } cases[] = {
        {"known, later", 5, {Pends("reply")}, "reply"},
        {"known, at once", 5, {now}, "reply"},
        {"known, told twice", 5, {twice}, "reply"},
        {"known, within the call", 5, {inCall}, "reply"},
        {"known, short", 6, {Pends("reply")}, ""},
        {"known, fails", 4, {fails}, ""},
        {"one short chunk", 0, {Pends("reply")}, "reply"},
        {"chunks, the last one short", 0, {chunk, Pends("reply")}, all},
        {"exactly one chunk", 0, {chunk, Pends()}, kChunk},
        {"nothing at once", 0, {}, ""},
        {"full at once: filled then and there", 0, {{How::AtOnce, kChunk}, now}, kChunk},
        {"full, told twice", 0, {fullTwice, now}, kChunk},
        {"later, then full, told twice", 0, {chunk, fullTwice, now}, kChunk + kChunk},
        {"later, then at once", 0, {chunk, now}, all},
        {"within the calls", 0, {chunkInCall, chunkInCall, inCall}, kChunk + all},
        {"chunk, fails later", 0, {chunk, failsLater}, ""},
        {"chunk, fails", 0, {chunk, fails}, ""},
        {"sent at once, and completed", 5, {now}, "reply", {How::ToldTwice}},
        {"sent within the call", 5, {now}, "reply", {How::EndsInTheCall}},
        {"send fails later", 5, {fails}, "", {How::Pends, "", false}},
        {"send fails", 5, {now}, "", {How::Fails}},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.name);
        Exchange fake;
        fake.contentLength = test.length;
        fake.send = test.send;
        fake.reads = test.reads;
        fake.Send();
        const bool isSent = fake.pending || !fake.readSizes.empty();
        EXPECT_EQ(fake.response->fillings, fake.pending ? 0 : 1);
        fake.Run();
        EXPECT_EQ(fake.response->fillings, 1);
        EXPECT_TRUE(fake.response->bytes == test.bytes) << fake.response->bytes.size();
        EXPECT_EQ(fake.response->status, isSent ? 200u : 0u);
    }
}

TEST(Calls, BodyIsThereForEverySend) {
    Exchange fake;
    const std::string body("b\0y", 3);
    fake.request->SetUploadData({body.begin(), body.end()});
    fake.Send();
    fake.Run();
    fake.Send();
    fake.Run();
    fake.request->SendRequest();
    EXPECT_EQ(fake.bodies, std::vector<std::string>(3, body));
}

TEST(Calls, ResponseMayEndTheRequestThatFillsIt) {
    Exchange fake;
    fake.response->onFilled = [&] {
        fake.request.reset();
    };
    fake.Send();
    fake.Run();
    EXPECT_EQ(fake.response->fillings, 1);
    EXPECT_EQ(fake.closed, "request connection session ");
}

TEST(Calls, FinishedExchangeKeepsItsHandleForAnAddressAlone) {
    struct Case {
        DWORD status;
        bool hasLocation;
        std::string reply; ///< of five bytes, or it fails
    };
    for (const Case& test : {Case{200, false, "reply"}, Case{404, false, "reply"},
                             Case{200, false, ""}, Case{201, true, "reply"}}) {
        SCOPED_TRACE(test.reply);
        Exchange fake;
        fake.status = test.status;
        fake.hasLocation = test.hasLocation;
        fake.reads = {Pends(test.reply)};
        int fillings = 0;
        fake.response->onFilled = [&] {
            ++fillings;
            EXPECT_EQ(fake.closed, test.hasLocation ? "" : "request ");
        };
        fake.Send();
        fake.Run();
        EXPECT_EQ(fillings, 1);
        EXPECT_EQ(fake.request->GetRequestStatus(), test.status);
    }
}

TEST(Calls, NothingIsWaitedForLongerThanAnHourAtATime) {
    Exchange fake;
    fake.Send();
    EXPECT_EQ(fake.options[INTERNET_OPTION_SEND_TIMEOUT], 3'600'000u);
    EXPECT_EQ(fake.options[INTERNET_OPTION_RECEIVE_TIMEOUT], 3'600'000u);
    fake.Run();
}

TEST(Calls, CookiesThatComeBetweenTwoQuestionsAreNotLost) {
    FakeInternet fake;
    fake.cookies = {L"a=1", L"a=1; b=2", L"a=1; b=2", L"a=1; b=2"};
    std::wstring cookies;
    WebRequest(kUrl, WebRequestTypeGet).GetCookie(cookies);
    EXPECT_EQ(cookies, L"a=1; b=2");
    fake.cookies = {L"a=1"}; // and none the next time
    WebRequest(kUrl, WebRequestTypeGet).GetCookie(cookies);
    EXPECT_EQ(cookies, L"");
}

/// Tells its exchange to leave it alone when it goes, as a download's response does.
class DetachableResponse : public RecordingResponse, public IDetachable {
public:
    ~DetachableResponse() override { m_exchange->Abandon(); }
    void Attach(std::shared_ptr<RequestContext> exchange) override { m_exchange = exchange; }

private:
    std::shared_ptr<RequestContext> m_exchange;
};

/// The context is the platform's until its last callback, however late that comes. Request and
/// response are deleted in either order, in memory that must not be touched any more.
TEST(Calls, ContextLivesUntilEverybodyHasLetGo) {
    for (int round = 0; round < 12; ++round) {
        SCOPED_TRACE(round);
        const int completions = round % 3; // while sending, while reading, when done
        const bool responseFirst = round / 3 % 2 == 0;
        Exchange fake;
        fake.closingTellsAtOnce = round < 6;
        fake.response = std::make_unique<DetachableResponse>();
        fake.Send();
        for (int i = 0; i < completions; ++i) {
            fake.Complete();
        }
        fake.response->onFilled = [] {
            ADD_FAILURE() << "filled after the end";
        };
        const auto context = reinterpret_cast<RequestContext*>(fake.context)->weak_from_this();
        if (responseFirst) {
            fake.response.reset();
            // A transfer that nobody waits for any more is ended; one that is over has been.
            EXPECT_EQ(fake.closed, "request ");
        }
        fake.request.reset();
        fake.response.reset();
        EXPECT_EQ(fake.closed, "request connection session ");
        if (!fake.closingTellsAtOnce) {
            const auto reads = fake.readSizes;
            fake.Run();
            EXPECT_EQ(fake.readSizes, reads) << "an ended request is not read on";
            EXPECT_FALSE(context.expired());
            fake.Notify(fake.context, INTERNET_STATUS_HANDLE_CLOSING);
        }
        EXPECT_TRUE(context.expired());
    }
}

} // namespace
} // namespace brevint::test
