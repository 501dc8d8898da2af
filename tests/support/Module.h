#pragma once

#include <cstddef>

namespace brevint::test {

/// A shared library that is loaded at run time; null when it cannot be.
void* LoadModule(const char* name);
void* FindSymbol(void* module, const char* name);
void UnloadModule(void* module);

/// What this process has open: threads, and handles or file descriptors.
std::size_t ThreadsAndHandles();

} // namespace brevint::test
