#include "support/Limits.h"
#include "support/Xml.h"
#include "tests/support/linux/RepeatedPages.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <string_view>

#include <sys/mman.h>

namespace brevint::test {
namespace {

bool IsRead(std::string_view reply) {
    return XmlDocPtr(ParseXML(reply, MarkupMode::Strict)) != nullptr;
}

// The same element again and again, each as long as libxml2 lets a text be.
TEST(LongReply, IsReadUpToTheLimitOnly) {
    constexpr std::size_t page = 4096;
    constexpr std::size_t size = page + Limits::kLongestReply + page;
    const std::string element = "<y>" + std::string((1 << 23) - 7, ' ') + "</y>";
    EXPECT_TRUE(IsRead("<r>" + element + element + "</r>"));
    void* const memory =
        mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    ASSERT_NE(memory, MAP_FAILED);
    auto* const reply = static_cast<char*>(memory);
    std::memset(reply, ' ', page);
    std::memcpy(reply, "<r>", 3);
    FillWithRepeatedPages(reply + page, Limits::kLongestReply, element);
    std::memcpy(reply + size - page, "</r>", 4);
    EXPECT_FALSE(IsRead({reply, size - page + 4}));
    munmap(memory, size);
}

} // namespace
} // namespace brevint::test
