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
    constexpr std::size_t page = 4096;
    constexpr std::size_t size = Limits::kLongestReply + page;
    void* const memory =
        mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    ASSERT_NE(memory, MAP_FAILED);
    auto* const reply = static_cast<char*>(memory);
    std::memset(reply, ' ', page);
    std::memcpy(reply, "<r/>", 4);
    FillWithRepeatedPages(reply + page, size - page, ' ');
    const auto isRead = [reply](std::size_t count) {
        return XmlDocPtr(ParseXML(std::string_view(reply, count), MarkupMode::Strict)) != nullptr;
    };
    EXPECT_TRUE(isRead(2 * page));
    EXPECT_FALSE(isRead(Limits::kLongestReply + 1));
    munmap(memory, size);
}

} // namespace
} // namespace brevint::test
