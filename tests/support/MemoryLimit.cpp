#include "tests/support/MemoryLimit.h"

#include <atomic>
#include <cstdlib>
#include <limits>
#include <new>

namespace {

constexpr std::size_t kNoLimit = std::numeric_limits<std::size_t>::max() - 1;
std::atomic<std::size_t> largest = kNoLimit;

} // namespace

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return size <= largest ? std::malloc(size + 1) : nullptr;
}
void* operator new(std::size_t size) {
    void* const memory = operator new(size, std::nothrow);
    return memory ? memory : throw std::bad_alloc();
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

namespace brevint::test {

MemoryLimit::MemoryLimit(std::size_t largestAllocation) {
    largest = largestAllocation;
}

MemoryLimit::~MemoryLimit() {
    largest = kNoLimit;
}

} // namespace brevint::test
