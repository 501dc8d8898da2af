#include "support/Limits.h"
#include "support/Xml.h"
#include "tests/support/linux/RepeatedPages.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <string_view>

#include <sys/mman.h>

using namespace std::string_view_literals;

namespace brevint::test {
namespace {

bool IsRead(std::string_view reply) {
    return XmlDocPtr(ParseXML(reply, MarkupMode::Strict)) != nullptr;
}

// The same element again and again, each as long as libxml2 lets a text be.
TEST(LongReply, IsReadUpToTheLimitOnly) {
    constexpr std::size_t kPage = 4096;
    constexpr std::size_t kSize = kPage + Limits::kLongestReply + kPage;
    const std::string element = "<y>" + std::string((1 << 23) - 7, ' ') + "</y>";
    EXPECT_TRUE(IsRead("<r>" + element + element + "</r>"));
    void* const memory =
        mmap(nullptr, kSize, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    ASSERT_NE(memory, MAP_FAILED);
    auto* const reply = static_cast<char*>(memory);
    std::memset(reply, ' ', kPage);
    std::ranges::copy("<r>"sv, reply);
    FillWithRepeatedPages(reply + kPage, Limits::kLongestReply, element);
    std::ranges::copy("</r>"sv, reply + kSize - kPage);
    EXPECT_FALSE(IsRead({reply, kSize - kPage + 4}));
    munmap(memory, kSize);
}

} // namespace
} // namespace brevint::test
