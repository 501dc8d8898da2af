#pragma once

#include <cstddef>

namespace brevint::test {

/// Makes larger allocations of this process fail, as long as it lives. Programs that use it are
/// built with its source, which replaces operator new.
class MemoryLimit {
public:
    explicit MemoryLimit(std::size_t largestAllocation);
    ~MemoryLimit();
};

} // namespace brevint::test
