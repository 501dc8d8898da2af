#include "tests/support/Environment.h"

#include <cstdlib>

namespace brevint::test {

void SetVariable(const std::string& name, const std::string& value) {
    setenv(name.c_str(), value.c_str(), 1);
}

void ClearVariable(const std::string& name) {
    unsetenv(name.c_str());
}

} // namespace brevint::test
