#include "tests/support/Module.h"

#include <dlfcn.h>
#include <filesystem>

namespace brevint::test {

void* LoadModule(const char* name) {
    return dlopen(name, RTLD_NOW | RTLD_LOCAL);
}

void* FindSymbol(void* module, const char* name) {
    return dlsym(module, name);
}

void UnloadModule(void* module) {
    dlclose(module);
}

std::size_t ThreadsAndHandles() {
    using Entries = std::filesystem::directory_iterator;
    return static_cast<std::size_t>(std::distance(Entries("/proc/self/task"), Entries()) +
                                    std::distance(Entries("/proc/self/fd"), Entries()));
}

} // namespace brevint::test
