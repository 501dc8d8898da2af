#pragma once

#include <filesystem>
#include <functional>
#include <vector>

namespace brevint::test {

/// Makes of a part file that was kept one that must not be used again.
struct ForeignPart {
    const char* what;
    std::function<void(const std::filesystem::path& part)> make;
};

/// Those that the target knows.
std::vector<ForeignPart> ForeignParts();

} // namespace brevint::test
