#include "cli/terminal/windows/StoppableWrite.h"

#include "support/windows/Handles.h"

#include <gtest/gtest.h>

#include <thread>

namespace brevint::cli {
namespace {

TEST(StoppableWrite, EndsWhenItIsStoppedAndNobodyReads) {
    using Patience = std::optional<std::chrono::milliseconds>;
    for (const Patience patience : {Patience(), Patience(1)}) {
        HANDLE readEnd = nullptr;
        HANDLE writeEnd = nullptr;
        ASSERT_TRUE(CreatePipe(&readEnd, &writeEnd, nullptr, 0));
        const HandlePtr reading(readEnd);
        const HandlePtr writing(writeEnd);
        StopSource source;
        std::thread reader([&] {
            char first = 0;
            DWORD count = 0;
            EXPECT_TRUE(ReadFile(reading.get(), &first, 1, &count, nullptr));
            source.request_stop();
        });
        EXPECT_EQ(
            std::errc::operation_canceled,
            WriteAll(writing.get(), std::string(1'000'000, 'x'), source.get_token(), patience));
        reader.join();
    }
}

} // namespace
} // namespace brevint::cli
