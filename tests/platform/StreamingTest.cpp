#include "tests/platform/Exchange.h"
#include "tests/support/ScriptedServer.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

namespace brevint::test {
namespace {

constexpr std::string_view kEarlyReply =
    "HTTP/1.1 413 Too Large\r\nContent-Length: 8\r\nConnection: close\r\n\r\ntoo much";

/// An exchange whose body is handed over in parts.
class StreamedSend {
public:
    explicit StreamedSend(const std::wstring& url)
        : m_exchange(url, {.verb = L"POST", .flags = INTERNET_FLAG_NO_AUTO_REDIRECT}) {}

    bool Begin(DWORD total, std::wstring headers = {}, std::string firstPart = {}) {
        INTERNET_BUFFERSW buffers{};
        buffers.dwStructSize = sizeof buffers;
        buffers.lpcszHeader = headers.c_str();
        buffers.dwHeadersLength = static_cast<DWORD>(headers.size());
        buffers.lpvBuffer = firstPart.empty() ? nullptr : firstPart.data();
        buffers.dwBufferLength = static_cast<DWORD>(firstPart.size());
        buffers.dwBufferTotal = total;
        return HttpSendRequestExW(m_exchange.Request(), &buffers, nullptr, 0, 0) != FALSE;
    }
    bool Write(const std::string& part) {
        DWORD written = 0;
        return InternetWriteFile(m_exchange.Request(), part.data(), static_cast<DWORD>(part.size()),
                                 &written) != FALSE &&
               written == part.size();
    }
    bool End() { return HttpEndRequestW(m_exchange.Request(), nullptr, 0, 0) != FALSE; }
    const Exchange& Reply() const { return m_exchange; }

private:
    Exchange m_exchange;
};

std::string QueryText(HINTERNET request, DWORD header) {
    wchar_t text[100];
    DWORD size = sizeof text;
    return HttpQueryInfoW(request, header, text, &size, nullptr) ? Narrow(text) : "none";
}

TEST(Streaming, BodyOfSeveralPartsArrivesWholeWithItsLength) {
    const std::string body = ScriptedServer::Pattern(700'001);
    struct Case {
        const char* name;
        std::size_t size;
        std::size_t firstPart;
        bool ownHeader; ///< The length stands in a header and not in the platform's count.
    };
    const Case cases[] = {
        {"counted", body.size(), 0, false},
        {"first part with the head", body.size(), 1000, false},
        {"all with the head", 1000, 1000, false},
        {"own header", body.size(), 0, true},
        {"own header, first part", 5000, 10, true},
        {"nothing", 0, 0, true},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.name);
        ScriptedServer server;
        server.On("/").Reply(201, {}, "stored");
        StreamedSend send(server.Url("/"));
        const std::string whole = body.substr(0, test.size);
        ASSERT_TRUE(send.Begin(
            test.ownHeader ? 0 : static_cast<DWORD>(test.size),
            test.ownHeader ? L"Content-Length: " + std::to_wstring(test.size) + L"\r\n" : L"",
            whole.substr(0, test.firstPart)));
        for (const std::string& part : Chunks(whole.substr(test.firstPart), 256 * 1024)) {
            EXPECT_TRUE(send.Write(part));
        }
        EXPECT_TRUE(send.End());
        EXPECT_EQ(send.Reply().Status(), 201u);
        EXPECT_EQ(send.Reply().ReadAll(), "stored");
        const ScriptedServer::Request request = server.Requests().at(0);
        EXPECT_EQ(request.Header("Content-Length"), std::to_string(test.size));
        EXPECT_EQ(request.HeaderCount("Content-Length"), 1u);
        EXPECT_TRUE(request.body == whole);
    }
}

TEST(Streaming, LengthBeyond32BitsGoesOut) {
    ScriptedServer server;
    server.On("/").Wait("the body has ended");
    {
        StreamedSend send(server.Url("/"));
        ASSERT_TRUE(send.Begin(0, L"Content-Length: 5000000001\r\n"));
        EXPECT_TRUE(send.Write("beginning"));
    }
    ASSERT_TRUE(server.AwaitArrivalAt("the body has ended"));
    const ScriptedServer::Request request = server.Requests().at(0);
    EXPECT_EQ(request.Header("Content-Length"), "5000000001");
    EXPECT_EQ(request.HeaderCount("Content-Length"), 1u);
    EXPECT_EQ(request.body, "beginning");
}

TEST(Streaming, EndTellsWhatCameOfABodyThatWasNotTaken) {
    const std::string part = ScriptedServer::Pattern(256 * 1024);
    struct Case {
        const char* name;
        bool replies;
        DWORD status;
    };
    for (const Case& test : {Case{"early reply", true, 413}, Case{"reset", false, 0}}) {
        SCOPED_TRACE(test.name);
        ScriptedServer server;
        auto& script = server.OnConnect().Wait("a part is sent");
        test.replies ? script.Send(kEarlyReply).Close() : script.Reset();
        StreamedSend send(server.Url("/"));
        ASSERT_TRUE(send.Begin(static_cast<DWORD>(40 * part.size())));
        EXPECT_TRUE(send.Write("beginning"));
        server.Open("a part is sent");
        for (int i = 0; i < 30 && send.Write(part); ++i) {}
        EXPECT_TRUE(send.End() || !test.replies);
        EXPECT_EQ(send.Reply().Status(), test.status);
        EXPECT_EQ(send.Reply().ReadAll(), test.replies ? "too much" : "");
    }
}

TEST(Streaming, RedirectIsTheReply) {
    ScriptedServer server;
    server.On("/").Reply(302, {{"Location", "/elsewhere"}}, "moved");
    StreamedSend send(server.Url("/"));
    ASSERT_TRUE(send.Begin(4));
    EXPECT_TRUE(send.Write("body"));
    EXPECT_TRUE(send.End());
    EXPECT_EQ(send.Reply().Status(), 302u);
    EXPECT_EQ(QueryText(send.Reply().Request(), HTTP_QUERY_LOCATION), "/elsewhere");
    EXPECT_EQ(server.Requests().size(), 1u);
}

TEST(Streaming, HeadersThatResumeADownloadPassUnchanged) {
    const struct {
        DWORD query;
        const char* name;
        const char* value;
    } headers[] = {
        {HTTP_QUERY_ETAG, "ETag", "\"a, \\\"b\""},
        {HTTP_QUERY_LAST_MODIFIED, "Last-Modified", "Sun, 06 Nov 1994 08:49:37 GMT"},
        {HTTP_QUERY_CONTENT_RANGE, "Content-Range", "bytes 5000000000-9999999999/10000000000"},
        {HTTP_QUERY_RETRY_AFTER, "Retry-After", "120"},
        {HTTP_QUERY_CONTENT_TYPE, "Content-Type", "text/html; charset=utf-8"},
        {HTTP_QUERY_CONTENT_LENGTH, "Content-Length", "5000000000"},
    };
    ScriptedServer::Headers reply;
    for (const auto& header : headers) {
        reply.emplace_back(header.name, header.value);
    }
    ScriptedServer server;
    server.On("/").Head(206, reply);
    Exchange exchange(server.Url("/"),
                      {.headers = L"Range: bytes=5000000000-\r\nIf-Range: \"a, \\\"b\"\r\n"});
    ASSERT_TRUE(exchange.Send());
    for (const auto& header : headers) {
        EXPECT_EQ(QueryText(exchange.Request(), header.query), header.value);
    }
    const ScriptedServer::Request request = server.Requests().at(0);
    EXPECT_EQ(request.Header("Range"), "bytes=5000000000-");
    EXPECT_EQ(request.Header("If-Range"), "\"a, \\\"b\"");
}

} // namespace
} // namespace brevint::test
