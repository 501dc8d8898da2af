#include "tests/support/Environment.h"

#include <cstdlib>

namespace brevint::test {

void SetVariable(const std::string& name, const std::string& value) {
    _putenv_s(name.c_str(), value.c_str());
}

// The C runtime takes a variable out when it is set to nothing.
void ClearVariable(const std::string& name) {
    _putenv_s(name.c_str(), "");
}

} // namespace brevint::test
