#pragma once

#include <string>

namespace brevint::test {

/// Sets an environment variable of this process.
void SetVariable(const std::string& name, const std::string& value);

/// Takes an environment variable out of this process's environment.
void ClearVariable(const std::string& name);

} // namespace brevint::test
