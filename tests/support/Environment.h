#pragma once

#include <cstddef>
#include <string>

namespace brevint::test {

/// Sets an environment variable of this process.
void SetVariable(const std::string& name, const std::string& value);

/// Takes an environment variable out of this process's environment.
void ClearVariable(const std::string& name);

/// Loads a shared library at run time; null when it cannot be.
void* LoadModule(const char* name);
void* FindSymbol(void* module, const char* name);
void UnloadModule(void* module);

/// How many handles (on Linux, threads and file descriptors) this process has.
std::size_t CountHandles();

} // namespace brevint::test
