#include "brevint/IDetachable.h"
#include "brevint/IRequestInfo.h"
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
using Lines = std::vector<std::string>;

constexpr const wchar_t* kUrl = L"http://host/path?q=1";
const std::string kChunk(100'000, 'c');

/// A request description that keeps the order in which it is read.
struct RecordingInfo : IRequestInfo {
    std::vector<char> bytes;
    mutable Lines reads;

    template <class T>
    const T& Note(const char* what, const T& value) const {
        reads.push_back(what);
        return value;
    }
    std::wstring GetRequestUrl() const override { return Note("url", kUrl); }
    WebRequestType GetRequestType() const override { return Note("type", WebRequestTypePut); }
    void GetAcceptTypes(std::vector<AcceptType>& types) const override {
        types.push_back(Note("accept types", AcceptTypeOctetStream));
        types.push_back(static_cast<AcceptType>(9));
    }
    std::wstring GetHeaders() const override { return Note("headers", L"X-B: 2"); }
    int GetRequestFlags() const override { return Note("flags", 0x200000); }
    std::wstring GetUploadString() const override { return Note("text", L"body"); }
    const std::vector<char>& GetUploadData() const override { return Note("bytes", bytes); }
};

/// The reply's bytes after what the caller holds already.
std::string ReadBytes(IRequest& request) {
    std::vector<char> out{'#'};
    request.GetRequestedData(out);
    return {out.begin(), out.end()};
}

Step Pends(std::string bytes = {}) {
    return {How::pends, std::move(bytes)};
}

/// An asynchronous exchange, whose send and whose read pend unless the test scripts other ones.
struct Exchange : FakeInternet {
    Exchange() {
        contentLength = 5;
        send = Pends();
        reads = {Pends("reply")};
    }

    void Send() { request->SendRequestAsync(response.get()); }

    /// Ends, one after the other, whatever is pending; what else is told meanwhile changes nothing.
    void Run() {
        while (IsPending()) {
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

TEST(Calls, DescriptionBecomesAnExchange) {
    Exchange fake;
    fake.scheme = INTERNET_SCHEME_HTTPS;
    RecordingInfo info;
    fake.request->AddHeader(L"X-A: 1");
    fake.request->SendRequestAsync(&info, fake.response.get());
    fake.request.reset();
    EXPECT_EQ(info.reads,
              Lines({"url", "type", "accept types", "headers", "flags", "bytes", "text"}));
    EXPECT_EQ(fake.calls, Lines({"open 'Velmora' 0 null null 0x10000000",
                                 "option session 6 3600000 4", "option session 5 3600000 4",
                                 "callback session", "crack 'http://host/path?q=1' 0 0 256 2084",
                                 "connect session 'host' 80 null null 3 0 0",
                                 "request connection 'PUT' '/path?q=1' null null accepts "
                                 "'application/octet-stream' 'text/html' 0xa00000 context",
                                 "send request 'X-A: 1\r\nX-B: 2\r\n' body 4", "close request",
                                 "close connection", "close session"}));
}

TEST(Calls, WhatIsNullOrUnknownCountsAsNotGiven) {
    FakeInternet fake;
    WebRequest request(nullptr, WebRequestTypeDelete);
    request.SetRequestType(static_cast<WebRequestType>(4));
    request.SetUploadData(nullptr);
    request.AddHeader(nullptr);
    request.SendRequest();
    EXPECT_EQ(fake.calls.front(), "open 'Velmora' 0 null null 0x0");
    EXPECT_EQ(fake.CallsTo("crack"), Lines({"crack '' 0 0 256 2084"}));
    EXPECT_EQ(fake.CallsTo("request"),
              Lines({"request connection 'DELETE' '/path?q=1' null null accepts 0x0 none"}));
    EXPECT_EQ(fake.CallsTo("send"), Lines({"send request '\r\n' null 0"}));
}

TEST(Calls, ReplyIsReadAsItsLengthIsKnownOrNot) {
    const std::string nul("ab\0cd", 5);
    auto cut = kChunk;
    cut[3] = '\0';
    const Step withNul{How::atOnce, nul}, chunk{How::atOnce, cut}, fails{How::fails};
    struct Case {
        const char* name;
        std::optional<DWORD> length;
        std::deque<Step> reads;
        std::string bytes;
        std::wstring text;
    };
    for (const auto& test : {
             Case{"known", 5, {withNul}, nul, L"ab"},
             Case{"known, too short", 6, {withNul}, "", L""},
             Case{"known, failed", 5, {fails}, "", L""},
             Case{"unknown", {}, {withNul}, nul, L"ab"},
             Case{"announced as 0", 0, {withNul}, nul, L"ab"},
             Case{"chunks, each cut on its own", {}, {chunk, withNul}, cut + nul, L"cccab"},
             Case{"failure: what came stays", {}, {chunk, fails}, cut, L"ccc"},
         }) {
        SCOPED_TRACE(test.name);
        FakeInternet fake;
        fake.contentLength = test.length;
        WebRequest request(kUrl, WebRequestTypeGet);
        request.SendRequest();
        fake.reads = test.reads;
        EXPECT_EQ(ReadBytes(request), '#' + test.bytes);
        fake.reads = test.reads;
        std::wstring text = L"what was there";
        request.GetRequestedData(text);
        EXPECT_EQ(text, test.text);
        const auto size = test.length.value_or(0) ? *test.length : 100'000;
        EXPECT_EQ(fake.CallsTo("read").at(0), "read request " + std::to_string(size) + " 0");
    }
}

TEST(Calls, EveryWayOfAnAsynchronousExchange) {
    const Step now{How::atOnce, "reply"}, inCall{How::endsInTheCall, "reply"};
    const Step twice{How::toldTwice, "reply"}, fullTwice{How::toldTwice, kChunk};
    const Step fails{How::fails}, failsLater{How::pends, "rest", false};
    const Step chunk = Pends(kChunk), chunkInCall{How::endsInTheCall, kChunk};
    const auto all = kChunk + "reply";
    struct Case {
        const char* name;
        std::optional<DWORD> length;
        std::deque<Step> reads;
        std::string bytes;
        Step send = Pends();
    };
    for (const auto& test : {
             Case{"known, later", 5, {Pends("reply")}, "reply"},
             Case{"known, at once", 5, {now}, "reply"},
             Case{"known, told twice", 5, {twice}, "reply"},
             Case{"known, within the call", 5, {inCall}, "reply"},
             Case{"known, short", 6, {Pends("reply")}, ""},
             Case{"known, fails", 4, {fails}, ""},
             Case{"one short chunk", {}, {Pends("reply")}, "reply"},
             Case{"chunks, the last one short", {}, {chunk, Pends("reply")}, all},
             Case{"exactly one chunk", {}, {chunk, Pends()}, kChunk},
             Case{"nothing at once", {}, {}, ""},
             Case{"full at once: filled then and there", {}, {{How::atOnce, kChunk}, now}, kChunk},
             Case{"full, told twice", {}, {fullTwice, now}, kChunk},
             Case{"later, then full, told twice", {}, {chunk, fullTwice, now}, kChunk + kChunk},
             Case{"later, then at once", {}, {chunk, now}, all},
             Case{"within the calls", {}, {chunkInCall, chunkInCall, inCall}, kChunk + all},
             Case{"chunk, fails later", {}, {chunk, failsLater}, ""},
             Case{"chunk, fails", {}, {chunk, fails}, ""},
             Case{"sent at once, and completed", 5, {now}, "reply", {How::toldTwice}},
             Case{"sent within the call", 5, {now}, "reply", {How::endsInTheCall}},
             Case{"send fails later", 5, {fails}, "", {How::pends, "", false}},
             Case{"send fails", 5, {now}, "", {How::fails}},
         }) {
        SCOPED_TRACE(test.name);
        Exchange fake;
        fake.contentLength = test.length;
        fake.send = test.send;
        fake.reads = test.reads;
        fake.Send();
        const bool isSent = fake.IsPending() || !fake.CallsTo("read").empty();
        EXPECT_EQ(fake.response->fillings, fake.IsPending() ? 0 : 1);
        fake.Run();
        EXPECT_EQ(fake.response->fillings, 1);
        EXPECT_TRUE(fake.response->bytes == test.bytes) << fake.response->bytes.size();
        EXPECT_EQ(fake.response->status, isSent ? 200u : 0u);
    }
}

TEST(Calls, BodyIsThereForEverySend) {
    Exchange fake;
    RecordingInfo info;
    info.bytes = {'b', '\0', 'y'};
    fake.request->SendRequestAsync(&info, fake.response.get());
    fake.Run();
    fake.Send();
    fake.Run();
    fake.request->SendRequest();
    EXPECT_EQ(fake.CallsTo("send"), Lines(3, std::string("send request 'X-B: 2\r\n' b\0y 3", 29)));
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
            // A transfer that nobody waits for any more is ended.
            EXPECT_EQ(fake.CallsTo("close").size(), completions < 2 ? 1u : 0u);
        }
        fake.request.reset();
        fake.response.reset();
        EXPECT_EQ(fake.CallsTo("close"),
                  Lines({"close request", "close connection", "close session"}));
        if (!fake.closingTellsAtOnce) {
            const auto calls = fake.calls;
            fake.Run();
            EXPECT_EQ(fake.calls, calls) << "an ended request is not read on";
            EXPECT_FALSE(context.expired());
            fake.Notify(fake.context, INTERNET_STATUS_HANDLE_CLOSING);
        }
        EXPECT_TRUE(context.expired());
    }
}

} // namespace
} // namespace brevint::test
