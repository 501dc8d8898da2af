#include "tests/support/Environment.h"

#include <cstdlib>
#include <dlfcn.h>
#include <filesystem>

namespace brevint::test {

void SetVariable(const std::string& name, const std::string& value) {
    setenv(name.c_str(), value.c_str(), 1);
}

void ClearVariable(const std::string& name) {
    unsetenv(name.c_str());
}

void* LoadModule(const char* name) {
    return dlopen(name, RTLD_NOW | RTLD_LOCAL);
}

void* FindSymbol(void* module, const char* name) {
    return dlsym(module, name);
}

void UnloadModule(void* module) {
    dlclose(module);
}

std::size_t CountHandles() {
    using Entries = std::filesystem::directory_iterator;
    return static_cast<std::size_t>(std::distance(Entries("/proc/self/task"), Entries()) +
                                    std::distance(Entries("/proc/self/fd"), Entries()));
}

} // namespace brevint::test
