#include "brevint/WebRequest.h"
#include "tests/support/RefusedPort.h"
#include "tests/support/ScriptedServer.h"
#include "tests/transport/RecordingResponse.h"

#include <gtest/gtest.h>

#include <functional>

namespace brevint::test {
namespace {

using Script = ScriptedServer::Script;

/// Fetches `url` as bytes, as text and into a response, which is filled once on another thread.
void ExpectReply(const std::wstring& url, unsigned long status, const std::string& bytes,
                 const std::string& text) {
    WebRequest first(url.c_str(), WebRequestTypeGet);
    first.SendRequest();
    std::vector<char> asBytes;
    first.GetRequestedData(asBytes);
    EXPECT_EQ(first.GetRequestStatus(), status);
    EXPECT_TRUE(std::string(asBytes.begin(), asBytes.end()) == bytes) << asBytes.size();

    WebRequest second(url.c_str(), WebRequestTypeGet);
    second.SendRequest();
    std::wstring asText = L"what was there";
    second.GetRequestedData(asText);
    EXPECT_TRUE(asText == std::wstring(text.begin(), text.end())) << asText.size();

    RecordingResponse response;
    WebRequest third(url.c_str(), WebRequestTypeGet);
    third.SendRequestAsync(&response);
    ASSERT_TRUE(response.AwaitFilled());
    EXPECT_EQ(response.GetStatusCode(), status);
    EXPECT_TRUE(response.Bytes() == bytes) << response.Bytes().size();
    EXPECT_EQ(response.Fillings(), 1);
}

TEST(Exchange, RepliesAsBytesAsTextAndInAResponse) {
    const std::string nul("ab\0cd", 5);
    const std::string pattern = ScriptedServer::Pattern(3'000'000);
    const auto patternText = pattern.substr(0, pattern.find('\0'));
    const ScriptedServer::Headers closes{{"Connection", "close"}};
    const std::vector<std::string> pieces{"bo", "dy"};
    struct Case {
        const char* name;
        std::function<void(Script&)> script;
        unsigned long status;
        std::string bytes, text;
    };
    const Case cases[] = {
        {"length", [&](Script& to) { to.Reply(200, {}, nul); }, 200, nul, "ab"},
        {"chunks", [&](Script& to) { to.ReplyChunked(200, {}, pieces); }, 200, "body", "body"},
        {"to the end", [&](Script& to) { to.Head(200, closes).Send("body").Close(); }, 200, "body",
         "body"},
        {"nothing", [](Script& to) { to.Reply(200); }, 200, "", ""},
        {"large", [&](Script& to) { to.Reply(200, {}, pattern); }, 200, pattern, patternText},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.name);
        ScriptedServer server;
        test.script(server.On("/"));
        ExpectReply(server.Url("/"), test.status, test.bytes, test.text);
    }
    const RefusedPort refused;
    for (const auto& url : {refused.Url(), std::wstring(), std::wstring(L"nonsense")}) {
        ExpectReply(url, 0, "", "");
    }
}

} // namespace
} // namespace brevint::test
