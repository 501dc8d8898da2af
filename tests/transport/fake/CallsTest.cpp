#include "brevint/IRequestInfo.h"
#include "brevint/WebRequest.h"
#include "tests/support/MemoryLimit.h"
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

/// A request description made of plain fields, which keeps the order in which it is read.
class RecordingInfo : public IRequestInfo {
public:
    std::wstring url;
    WebRequestType type = WebRequestTypeGet;
    std::vector<AcceptType> acceptTypes;
    std::wstring headers;
    int flags = 0;
    std::wstring text;
    std::vector<char> bytes;
    mutable std::vector<std::string> reads;

    std::wstring GetRequestUrl() const override { return Note("url", url); }
    WebRequestType GetRequestType() const override { return Note("type", type); }
    void GetAcceptTypes(std::vector<AcceptType>& types) const override {
        types =
            Note(types.empty() ? "accept types" : "accept types into a used vector", acceptTypes);
    }
    std::wstring GetHeaders() const override { return Note("headers", headers); }
    int GetRequestFlags() const override { return Note("flags", flags); }
    std::wstring GetUploadString() const override { return Note("text", text); }
    const std::vector<char>& GetUploadData() const override { return Note("bytes", bytes); }

private:
    template <class T>
    const T& Note(const char* what, const T& value) const {
        reads.push_back(what);
        return value;
    }
};

/// The reply's bytes after what the caller holds already.
std::string ReadBytes(IRequest& request) {
    std::vector<char> out{'#'};
    request.GetRequestedData(out);
    return {out.begin(), out.end()};
}

std::wstring ReadText(IRequest& request) {
    std::wstring out = L"what was there";
    request.GetRequestedData(out);
    return out;
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

    /// The context that the platform was given, without keeping it alive.
    std::weak_ptr<RequestContext> Context() const {
        return reinterpret_cast<RequestContext*>(context)->weak_from_this();
    }

    std::unique_ptr<RecordingResponse> response = std::make_unique<RecordingResponse>();
    std::unique_ptr<WebRequest> request = std::make_unique<WebRequest>(kUrl, WebRequestTypeGet);
};

TEST(Calls, DescriptionIsReadAndTheExchangeMadeInThisOrder) {
    for (const bool async : {false, true}) {
        Exchange fake;
        fake.scheme = INTERNET_SCHEME_HTTPS;
        RecordingInfo info;
        info.url = kUrl;
        info.type = WebRequestTypePut;
        info.acceptTypes = {AcceptTypeOctetStream, AcceptTypeXml};
        info.headers = L"X-B: 2";
        info.flags = 0x200000;
        info.text = L"body";
        Lines reads{"url", "type", "accept types", "headers", "flags", "bytes", "text"};
        if (!async) {
            info.bytes = {'b', '\0', 'd', 'y'};
            reads.pop_back();
            fake.send = {};
            fake.reads = {{How::atOnce, "reply"}};
        }
        {
            WebRequest request;
            request.AddHeader(L"X-A: 1");
            if (async) {
                request.SendRequestAsync(&info, fake.response.get());
                fake.Run();
                EXPECT_EQ(fake.response->Bytes(), "reply");
            } else {
                request.SendRequest(&info);
                EXPECT_EQ(request.GetRequestStatus(), 200u);
                EXPECT_EQ(ReadBytes(request), "#reply");
            }
        }
        EXPECT_EQ(info.reads, reads);
        const std::string body(async ? "body" : "b\0dy", 4);
        const std::string mode = async ? " 0xa00000 context" : " 0xa00000 none";
        Lines expected{"open 'Velmora' 0 null null " + std::string(async ? "0x10000000" : "0x0"),
                       "option session 6 3600000 4",
                       "option session 5 3600000 4",
                       "callback session",
                       "crack 'http://host/path?q=1' 0 0 256 2084",
                       "connect session 'host' 80 null null 3 0 0",
                       "request connection 'PUT' '/path?q=1' null null accepts "
                       "'application/octet-stream' 'text/xml'" +
                           mode,
                       "send request 'X-A: 1\r\nX-B: 2\r\n' " + body + " 4"};
        const auto exchange =
            async ? Lines{"query 0x20000005 0 4", "read request 5 0 2", "query 0x20000013 0 4"}
                  : Lines{"query 0x20000013 0 4", "query 0x20000005 0 4", "read request 5 0 0"};
        expected.insert(expected.end(), exchange.begin(), exchange.end());
        expected.insert(expected.end(), {"close request", "close connection", "close session"});
        EXPECT_EQ(fake.calls, expected);
    }
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
        std::string bytes, text;
        std::size_t readCount;
    };
    for (const auto& test : {
             Case{"known", 5, {withNul}, nul, "ab", 1},
             Case{"known, too short", 6, {withNul}, "", "", 1},
             Case{"known, failed", 5, {fails}, "", "", 1},
             Case{"unknown", {}, {withNul}, nul, "ab", 2},
             Case{"announced as 0", 0, {withNul}, nul, "ab", 2},
             Case{"chunks, each cut on its own", {}, {chunk, withNul}, cut + nul, "cccab", 3},
             Case{"failure: what came stays", {}, {chunk, fails}, cut, "ccc", 2},
         }) {
        SCOPED_TRACE(test.name);
        for (const bool asText : {false, true}) {
            FakeInternet fake;
            fake.contentLength = test.length;
            fake.reads = test.reads;
            WebRequest request(kUrl, WebRequestTypeGet);
            request.SendRequest();
            EXPECT_TRUE(asText
                            ? ReadText(request) == std::wstring(test.text.begin(), test.text.end())
                            : ReadBytes(request) == '#' + test.bytes);
            const auto size = test.length.value_or(0) ? *test.length : 100'000;
            EXPECT_EQ(fake.CallsTo("read"),
                      Lines(test.readCount, "read request " + std::to_string(size) + " 0 0"));
        }
    }
}

TEST(Calls, EveryWayToReadAReplyAsynchronously) {
    const Step failsLater{How::pends, "rest", false};
    const Step now{How::atOnce, "reply"}, inCall{How::endsInTheCall, "reply"};
    const Step fails{How::fails};
    const Step chunk = Pends(kChunk), chunkInCall{How::endsInTheCall, kChunk};
    const auto all = kChunk + "reply";
    struct Case {
        const char* name;
        std::optional<DWORD> length;
        std::deque<Step> reads;
        std::string bytes;
        std::size_t readCount;
    };
    for (const auto& test : {
             Case{"known, later", 5, {Pends("reply")}, "reply", 1},
             Case{"known, at once", 5, {now}, "reply", 1},
             Case{"known, within the call", 5, {inCall}, "reply", 1},
             Case{"known, short", 6, {Pends("reply")}, "", 1},
             Case{"known, fails", 4, {fails}, "", 1},
             Case{"one short chunk", {}, {Pends("reply")}, "reply", 1},
             Case{"chunks, the last one short", {}, {chunk, Pends("reply")}, all, 2},
             Case{"exactly one chunk", {}, {chunk, Pends()}, kChunk, 2},
             Case{"nothing at once", {}, {}, "", 1},
             Case{"full at once: filled then and there", {}, {{How::atOnce, kChunk}}, kChunk, 1},
             Case{"later, then at once", {}, {chunk, now}, all, 2},
             Case{"within the calls", {}, {chunkInCall, chunkInCall, inCall}, kChunk + all, 3},
             Case{"chunk, fails later", {}, {chunk, failsLater}, "", 2},
             Case{"chunk, fails", {}, {chunk, fails}, "", 2},
         }) {
        SCOPED_TRACE(test.name);
        Exchange fake;
        fake.status = 203;
        fake.contentLength = test.length;
        fake.reads = test.reads;
        fake.Send();
        EXPECT_EQ(fake.response->Fillings(), 0);
        fake.Run();
        EXPECT_EQ(fake.response->Fillings(), 1);
        EXPECT_TRUE(fake.response->Bytes() == test.bytes) << fake.response->Bytes().size();
        EXPECT_EQ(fake.response->GetStatusCode(), 203u);
        EXPECT_NE(fake.response->Thread(), std::this_thread::get_id());
        const auto* const sizeAndState = test.length ? " 0 2" : " 0 1";
        EXPECT_EQ(
            fake.CallsTo("read"),
            Lines(test.readCount,
                  "read request " + std::to_string(test.length.value_or(100'000)) + sizeAndState));
    }
}

TEST(Calls, EveryWayToSend) {
    struct Case {
        const char* name;
        bool FakeInternet::*works; ///< what does not, or null
        Step send;
        int fillingsAfterSend;
        bool arrives; ///< whether there is a reply
        std::size_t closed;
    };
    for (const auto& test : {
             Case{"later", nullptr, {How::pends}, 0, true, 3},
             Case{"at once, completed all the same", nullptr, {How::atOnce}, 0, true, 3},
             Case{"within the call", nullptr, {How::endsInTheCall}, 1, true, 3},
             Case{"fails later", nullptr, {How::pends, "", false}, 0, false, 3},
             Case{"fails", nullptr, {How::fails}, 1, false, 3},
             Case{"no session", &FakeInternet::sessionOpens, {}, 1, false, 0},
             Case{"not a URL", &FakeInternet::urlCracks, {}, 1, false, 1},
             Case{"no connection", &FakeInternet::connects, {}, 1, false, 1},
         }) {
        SCOPED_TRACE(test.name);
        Exchange fake;
        if (test.works) {
            fake.*test.works = false;
        }
        fake.send = test.send;
        fake.status = test.arrives ? 200 : 0;
        fake.reads = {{test.arrives ? How::atOnce : How::fails, "reply"}};
        fake.Send();
        EXPECT_EQ(fake.response->Fillings(), test.fillingsAfterSend);
        if (test.arrives && test.send.how == How::atOnce) {
            fake.Notify(fake.context, INTERNET_STATUS_REQUEST_COMPLETE);
        }
        fake.Run();
        EXPECT_EQ(fake.response->Fillings(), 1);
        EXPECT_EQ(fake.response->GetStatusCode(), test.arrives ? 200u : 0u);
        EXPECT_EQ(fake.response->Bytes(), test.arrives ? "reply" : "");
        fake.request.reset();
        EXPECT_EQ(fake.CallsTo("close").size(), test.closed);
    }
}

TEST(Calls, ReplyLargerThanMemoryIsAnEmptyOne) {
    for (const std::size_t chunks : {0U, 20U}) {
        Exchange fake;
        fake.contentLength = chunks ? std::nullopt : std::optional<DWORD>(4'294'967'295);
        fake.reads.assign(chunks, Pends(kChunk));
        fake.Send();
        const MemoryLimit limit(1'000'000);
        fake.Run();
        EXPECT_EQ(fake.response->Fillings(), 1);
        EXPECT_EQ(fake.response->Bytes(), "");
        fake.send = {};
        fake.request->SendRequest();
        fake.reads.assign(chunks, {How::atOnce, kChunk});
        EXPECT_EQ(ReadBytes(*fake.request), "#");
    }
}

/// The context is the platform's until its last callback, however late that comes. The response is
/// deleted right after the request, in memory that must not be touched any more.
TEST(Calls, ContextLivesUntilRequestAndPlatformHaveLetGo) {
    for (const bool tellsInClose : {true, false}) {
        for (const int completionsBefore : {0, 1, 2}) { // while sending, while reading, when done
            SCOPED_TRACE(completionsBefore);
            Exchange fake;
            fake.closingTellsAtOnce = tellsInClose;
            fake.Send();
            for (int i = 0; i < completionsBefore; ++i) {
                fake.Complete();
            }
            fake.response->onFilled = [] {
                ADD_FAILURE() << "filled after the request's end";
            };
            const auto context = fake.Context();
            fake.request.reset();
            fake.response.reset();
            EXPECT_EQ(context.expired(), tellsInClose);
            if (!tellsInClose) {
                const auto calls = fake.calls;
                fake.Run();
                EXPECT_EQ(fake.calls, calls) << "an ended request is not read on";
                EXPECT_FALSE(context.expired());
                fake.Notify(fake.context, INTERNET_STATUS_HANDLE_CLOSING);
                EXPECT_TRUE(context.expired());
            }
        }
    }
}

} // namespace
} // namespace brevint::test
