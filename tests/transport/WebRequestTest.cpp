#include "brevint/WebRequest.h"
#include "tests/support/ScriptedServer.h"

#include <gtest/gtest.h>

namespace brevint::test {
namespace {

TEST(WebRequest, WhatIsNullOrUnknownCountsAsNotGiven) {
    ScriptedServer server;
    server.On("DELETE /").Reply(200);
    WebRequest request(nullptr, WebRequestTypeDelete);
    request.SendRequest();
    EXPECT_EQ(request.GetRequestStatus(), 0u);
    request.SetRequestUrl(server.Url("/").c_str());
    request.SetRequestType(static_cast<WebRequestType>(4));
    request.AddAcceptType(static_cast<AcceptType>(9));
    request.SetUploadData(nullptr);
    request.AddHeader(nullptr);
    request.SendRequest();
    EXPECT_EQ(request.GetRequestStatus(), 200u);
    const auto sent = server.Requests().at(0);
    EXPECT_EQ(sent.body, "");
    EXPECT_EQ(sent.Header("Accept"), "text/html");
    EXPECT_EQ(sent.Header("User-Agent"), "Velmora");
}

TEST(WebRequest, BytesComeWholeAndTextEndsAtAZeroByte) {
    std::string body(100'000, 'c'); // a chunk as the library reads, whose text ends by itself
    body[3] = '\0';
    body += std::string("ab\0cd", 5);
    ScriptedServer server;
    server.On("/chunks").ReplyChunked(200, {}, {body});
    server.On("/length").Reply(200, {}, body);
    for (const std::string target : {"/chunks", "/length"}) {
        WebRequest request(server.Url(target).c_str(), WebRequestTypeGet);
        request.SendRequest();
        std::vector<char> bytes{'#'}; // what the caller holds already
        request.GetRequestedData(bytes);
        EXPECT_TRUE(std::string(bytes.begin(), bytes.end()) == '#' + body);
        request.SendRequest();
        std::wstring text = L"what was there";
        request.GetRequestedData(text);
        EXPECT_EQ(text, target == "/chunks" ? L"cccab" : L"ccc");
    }
}

} // namespace
} // namespace brevint::test
