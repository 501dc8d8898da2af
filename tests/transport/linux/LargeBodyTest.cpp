#include "brevint/WebRequest.h"
#include "tests/support/ScriptedServer.h"
#include "tests/support/linux/RepeatedPages.h"
#include "tests/transport/RecordingResponse.h"

#include <gtest/gtest.h>

namespace brevint::test {
namespace {

TEST(LargeBody, ThatThePlatformCannotCarryIsNotSentAtAll) {
    constexpr std::size_t kLength = (std::size_t{1} << 32) + 3;
    constexpr std::size_t kPage = 4096;
    std::vector<char> body;
    body.reserve(kLength + kPage);
    auto* const start = body.data() + kPage - reinterpret_cast<std::uintptr_t>(body.data()) % kPage;
    FillWithRepeatedPages(start, kLength - kPage, std::string(1 << 26, '\0'));
    body.resize(kLength);
    ScriptedServer server;
    server.On("/").Reply(200);
    WebRequest request(server.Url("/").c_str(), WebRequestTypePost);
    request.SetUploadData(body);
    request.SendRequest();
    EXPECT_EQ(request.GetRequestStatus(), 0u);
    RecordingResponse response;
    request.SendRequestAsync(&response);
    EXPECT_EQ(response.fillings, 1);
    EXPECT_EQ(response.status, 0u);
    EXPECT_EQ(server.ConnectionCount(), 0u);
}

} // namespace
} // namespace brevint::test
