#include "tests/cli/ClientRun.h"

#include <fstream>
#include <iterator>

namespace brevint::test {

std::string ReadFile(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void WriteFile(const std::filesystem::path& path, const std::string& content) {
    std::ofstream(path, std::ios::binary) << content;
}

} // namespace brevint::test
