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

} // namespace
} // namespace brevint::test
