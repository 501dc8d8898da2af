#include "support/Limits.h"
#include "support/Xml.h"
#include "tests/support/linux/RepeatedPages.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string_view>

#include <sys/mman.h>

namespace brevint::test {
namespace {

TEST(LongReply, IsReadUpToTheLimitOnly) {
    constexpr std::size_t kPage = 4096;
    constexpr std::size_t kSize = Limits::kLongestReply + kPage;
    void* const memory =
        mmap(nullptr, kSize, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    ASSERT_NE(memory, MAP_FAILED);
    auto* const reply = static_cast<char*>(memory);
    std::memset(reply, ' ', kPage);
    std::memcpy(reply, "<r/>", 4);
    FillWithRepeatedPages(reply + kPage, kSize - kPage, ' ');
    const auto isRead = [reply](std::size_t length) {
        return XmlDocPtr(ParseXML(std::string_view(reply, length), MarkupMode::Strict)) != nullptr;
    };
    EXPECT_TRUE(isRead(2 * kPage));
    EXPECT_FALSE(isRead(Limits::kLongestReply + 1));
    munmap(memory, kSize);
}

} // namespace
} // namespace brevint::test
