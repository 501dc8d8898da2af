#include "brevint/WebRequest.h"
#include "tests/support/ScriptedServer.h"
#include "tests/transport/RecordingResponse.h"

#include <gtest/gtest.h>

#include <sys/mman.h>
#include <unistd.h>

namespace brevint::test {
namespace {

TEST(LargeBody, ThatThePlatformCannotCarryIsNotSentAtAll) {
    constexpr std::size_t kLength = (std::size_t{1} << 32) + 3;
    constexpr std::size_t kWindow = std::size_t{1} << 26;
    std::vector<char> body;
    body.reserve(kLength + 2 * kWindow);
    // In little memory: its pages are the same few.
    const int pages = memfd_create("body", 0);
    ASSERT_EQ(ftruncate(pages, kWindow), 0);
    auto* const start = body.data() + 4096 - reinterpret_cast<std::uintptr_t>(body.data()) % 4096;
    for (std::size_t offset = 0; offset < kLength; offset += kWindow) {
        ASSERT_NE(mmap(start + offset, kWindow, PROT_READ | PROT_WRITE,
                       MAP_SHARED | MAP_FIXED | MAP_POPULATE, pages, 0),
                  MAP_FAILED);
    }
    close(pages);
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
